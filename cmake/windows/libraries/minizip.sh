# shellcheck shell=bash disable=SC2034,SC2154
source=zlib
version=1.2.13
needs=(zlib)

# It has Makefiles for other compilers only; a library of four sources.
make_library() {
  cp "$recipes/minizip.cmake" "$src/contrib/minizip/CMakeLists.txt"
  cmake_library "$src/contrib/minizip"
}
