# shellcheck shell=bash disable=SC2034,SC2154
source=libpng1.6
version=1.6.39
needs=(zlib)

make_library() {
  cmake_library "$src" -DPNG_SHARED=OFF -DPNG_STATIC=ON -DPNG_TESTS=OFF -DPNG_EXECUTABLES=OFF
}
