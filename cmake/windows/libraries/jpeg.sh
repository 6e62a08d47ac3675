# shellcheck shell=bash disable=SC2034,SC2154
source=libjpeg-turbo
version=2.1.5
needs=()

# With the vector code of its assembler sources, as Debian's own build has it: the same pixels on both systems.
make_library() {
  cmake_configure "$src" -DENABLE_SHARED=OFF -DWITH_TURBOJPEG=OFF -DREQUIRE_SIMD=ON
  cmake --build "$work/build" --parallel "$(nproc)" --target jpeg-static
  put include "$src"/{jpeglib,jmorecfg,jerror}.h "$work/build/jconfig.h"
  put lib "$work/build/libjpeg.a"
}
