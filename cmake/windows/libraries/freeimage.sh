# shellcheck shell=bash disable=SC2034,SC2154
source=freeimage
version=3.18.0
needs=(zlib jpeg png tiff)

# Its makefiles know neither a static library nor codecs from elsewhere on Windows.
make_library() {
  # It starts itself, as the shared library on other systems does, and loads no plug-ins from the program's folder.
  edit Source/FreeImage/FreeImage.cpp '/^#else.*!_WIN32/,/^void/s/^#ifndef FREEIMAGE_LIB/#if 1/' \
    's/FreeImage_Initialise\(FALSE\)/FreeImage_Initialise(TRUE)/'
  cp "$recipes/freeimage.cmake" "$src/CMakeLists.txt"
  cp "$recipes/freeimage.LeftOut.cpp" "$src/LeftOut.cpp"
  # TIFF's numbers of 16 bits take the header of a type, which needs no building.
  mkdir -p "$work/include"
  ln -s /usr/include/Imath "$work/include"
  cmake_library "$src" -DIMATH_HEADERS="$work/include"
}
