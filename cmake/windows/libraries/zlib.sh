# shellcheck shell=bash disable=SC2034,SC2154
source=zlib
version=1.2.13
needs=()

# Its own install brings the DLL along, so that what is wanted is put by hand.
make_library() {
  cmake_configure "$src"
  cmake --build "$work/build" --target zlibstatic
  # Configuring has moved the source's zconf.h aside in favour of the generated one.
  put include "$src/zlib.h" "$work/build/zconf.h"
  put lib "$work/build/libzlibstatic.a"
  mv "$staging$prefix/lib/libzlibstatic.a" "$staging$prefix/lib/libz.a"
}
