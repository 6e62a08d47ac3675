# shellcheck shell=bash disable=SC2034,SC2154
source=googletest
version=1.12.1
needs=()

make_library() {
  cmake_library "$src" -Dgtest_force_shared_crt=OFF
}
