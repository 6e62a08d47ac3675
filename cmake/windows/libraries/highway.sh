# shellcheck shell=bash disable=SC2034,SC2154
source=highway
version=1.0.3
needs=()

make_library() {
  cmake_library "$src" -DHWY_ENABLE_EXAMPLES=OFF -DBUILD_TESTING=OFF
}
