# shellcheck shell=bash disable=SC2034,SC2154
source=tiff
version=4.5.0
needs=(zlib jpeg)

make_library() {
  cmake_library "$src" -Dtiff-tools=OFF -Dtiff-tests=OFF -Dtiff-contrib=OFF -Dtiff-docs=OFF \
    -Dlzma=OFF -Dzstd=OFF -Dwebp=OFF -Dlerc=OFF -Djbig=OFF -Dlibdeflate=OFF -Dcxx=OFF
}
