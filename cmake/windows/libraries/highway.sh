# shellcheck shell=bash disable=SC2034,SC2154
source=highway
version=1.0.3
needs=()

make_library() {
  # Sorting, which takes most of the time and is not used.
  edit CMakeLists.txt '/^file\(GLOB HWY_CONTRIB_SOURCES/d' '/^ *hwy\/contrib\/sort\/vqsort\.cc$/d'
  cmake_library "$src" -DHWY_ENABLE_EXAMPLES=OFF -DBUILD_TESTING=OFF
}
