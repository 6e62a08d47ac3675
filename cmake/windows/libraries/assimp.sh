# shellcheck shell=bash disable=SC2034,SC2154
source=assimp
version=5.2.5
needs=(zlib minizip)

# The reader of IFC 2x3 makes an object of 23,000 sections, for which ld takes half a minute in each program, since its time
# grows with their square; with six parts it takes seconds. They instantiate what the table of the schema points to.
split_ifc_reader() {
  local ifc="$src/code/AssetLib/IFC" part list
  local construct='::Construct(const DB\&, const EXPRESS::LIST\&);'
  grep -o 'ObjectHelper<Ifc\w*,[0-9]*>' "$ifc/IFCReaderGen1_2x3.cpp" | LC_ALL=C sort -u >"$work/entities"
  split -n r/6 "$work/entities" "$work/entities."
  for list in "$work"/entities.*; do
    part="IFCReaderGen1_2x3${list##*.}"
    {
      printf '#include "IFCReaderGen_2x3.h"\nnamespace Assimp {\nusing namespace IFC::Schema_2x3;\nnamespace STEP {\n'
      sed "s/.*/template Object* &$construct/" "$list"
      printf '}\n}\n'
    } >"$ifc/$part.cpp"
    edit code/CMakeLists.txt "s/^( *AssetLib\/IFC\/)IFCReaderGen1_2x3\.cpp/&\n\1$part.cpp/"
  done
  {
    printf 'namespace STEP {\n'
    sed "s/.*/extern template Object* &$construct/" "$work/entities"
    printf '}\n'
  } >"$work/elsewhere"
  edit code/AssetLib/IFC/IFCReaderGen1_2x3.cpp "/^using namespace ::Assimp::IFC::Schema_2x3;/r $work/elsewhere"
}

# The formats that people exchange buildings and furniture in; each more makes the program larger. No exporters.
make_library() {
  # Debian's source asks for Draco, which only compressed meshes of one glTF extension need.
  edit code/CMakeLists.txt '/find_package\(draco CONFIG REQUIRED\)/d' '/DRACO_LIBRARIES\}\)$/d'
  edit cmake-modules/assimp-plain-config.cmake.in '/find_package\(draco/d'
  # Headers that Debian has taken out of the source in favour of its packages.
  mkdir -p "$work/include"
  ln -s /usr/include/utf8.h /usr/include/utf8 /usr/include/stb "$work/include"
  split_ifc_reader
  cmake_library "$src" -DASSIMP_BUILD_ZLIB=OFF -DASSIMP_BUILD_ASSIMP_TOOLS=OFF -DASSIMP_BUILD_TESTS=OFF \
    -DASSIMP_BUILD_SAMPLES=OFF -DASSIMP_BUILD_DRACO=OFF -DASSIMP_INSTALL_PDB=OFF -DASSIMP_WARNINGS_AS_ERRORS=OFF \
    -DASSIMP_NO_EXPORT=ON -DASSIMP_BUILD_ALL_IMPORTERS_BY_DEFAULT=OFF \
    -DASSIMP_BUILD_COLLADA_IMPORTER=ON -DASSIMP_BUILD_OBJ_IMPORTER=ON -DASSIMP_BUILD_GLTF_IMPORTER=ON \
    -DASSIMP_BUILD_3DS_IMPORTER=ON -DASSIMP_BUILD_IFC_IMPORTER=ON -DASSIMP_BUILD_FBX_IMPORTER=ON \
    -DASSIMP_BUILD_PLY_IMPORTER=ON -DASSIMP_BUILD_STL_IMPORTER=ON \
    -DCMAKE_CXX_FLAGS="-Wa,-muse-unaligned-vector-move -Wa,-mbig-obj -isystem $work/include" \
    -DCMAKE_C_FLAGS="-Wa,-muse-unaligned-vector-move -isystem $work/include"
}
