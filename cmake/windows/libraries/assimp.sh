# shellcheck shell=bash disable=SC2034,SC2154
source=assimp
version=5.2.5
needs=(zlib minizip)

# The formats that people exchange buildings and furniture in; each more makes the program larger. No exporters.
make_library() {
  # Debian's source asks for Draco, which only compressed meshes of one glTF extension need.
  edit code/CMakeLists.txt '/find_package\(draco CONFIG REQUIRED\)/d' '/DRACO_LIBRARIES\}\)$/d'
  edit cmake-modules/assimp-plain-config.cmake.in '/find_package\(draco/d'
  # Headers that Debian has taken out of the source in favour of its packages.
  mkdir -p "$work/include"
  ln -s /usr/include/utf8.h /usr/include/utf8 /usr/include/stb "$work/include"
  cmake_library "$src" -DASSIMP_BUILD_ZLIB=OFF -DASSIMP_BUILD_ASSIMP_TOOLS=OFF -DASSIMP_BUILD_TESTS=OFF \
    -DASSIMP_BUILD_SAMPLES=OFF -DASSIMP_BUILD_DRACO=OFF -DASSIMP_INSTALL_PDB=OFF -DASSIMP_WARNINGS_AS_ERRORS=OFF \
    -DASSIMP_NO_EXPORT=ON -DASSIMP_BUILD_ALL_IMPORTERS_BY_DEFAULT=OFF \
    -DASSIMP_BUILD_COLLADA_IMPORTER=ON -DASSIMP_BUILD_OBJ_IMPORTER=ON -DASSIMP_BUILD_GLTF_IMPORTER=ON \
    -DASSIMP_BUILD_3DS_IMPORTER=ON -DASSIMP_BUILD_IFC_IMPORTER=ON -DASSIMP_BUILD_FBX_IMPORTER=ON \
    -DASSIMP_BUILD_PLY_IMPORTER=ON -DASSIMP_BUILD_STL_IMPORTER=ON \
    -DCMAKE_CXX_FLAGS="-Wa,-muse-unaligned-vector-move -Wa,-mbig-obj -isystem $work/include" \
    -DCMAKE_C_FLAGS="-Wa,-muse-unaligned-vector-move -isystem $work/include"
}
