# shellcheck shell=bash disable=SC2034,SC2154
source=embree
version=3.13.5
needs=()

make_library() {
  # GCC is known by its name; CMake knows no front-end variant for it.
  edit CMakeLists.txt 's/ELSEIF\(\$\{CMAKE_CXX_COMPILER_FRONTEND_VARIANT\} MATCHES "GNU"\)/ELSEIF(CMAKE_CXX_COMPILER_ID MATCHES "GNU")/'
  # In UTF-16, which windres does not read.
  edit kernels/CMakeLists.txt '/^ *embree\.rc$/d'
  # Without what the program never asks for, which would take half of the time: other geometries (compiled even where
  # they are switched off), motion blur, builders for other qualities than ours, rays in packets of four and in streams.
  # The library answers it with an error, as it does on processors that cannot do it; so packets of eight, which it takes
  # apart where there is no AVX, are for those that have it.
  local left_out='TwoLevel|FastSpatial|MBSceneBuilder|Intersector4Hybrid|IntersectorStream' file
  for file in bvh4_factory bvh8_factory; do
    edit kernels/bvh/$file.cpp "s/SELECT_SYMBOL_\w+(\(features,\w*($left_out)\w*\))/INIT_SYMBOL\1/"
  done
  edit kernels/CMakeLists.txt \
    '/^ *common\/scene_(user_geometry|instance|quad_mesh|curves|line_segments|grid_mesh|points)\.cpp *$/d' \
    '/^ *subdiv\/[a-z]+_curve\.cpp$/d' '/^ *bvh\/bvh_builder_hair(_mb)?\.cpp$/d' \
    '/^ *geometry\/(instance_intersector|curve_intersector_virtual_[a-z0-9_]+)\.cpp$/d' \
    's/^ *bvh\/bvh_builder_(twolevel|morton|sah_spatial|sah_mb)\.cpp//' 's/^ *common\/rtcore_builder\.cpp//' \
    's/^ *bvh\/bvh_intersector_(hybrid4|stream)_bvh[48]\.cpp//'
  # Not in Debian's source.
  edit common/cmake/package.cmake 's/^(INSTALL\(FILES .*readme\.pdf".*) COMPONENT lib\)/\1 COMPONENT lib OPTIONAL)/'
  cmake_library "$src" -DEMBREE_STATIC_LIB=ON -DEMBREE_ISPC_SUPPORT=OFF -DEMBREE_TUTORIALS=OFF \
    -DEMBREE_TASKING_SYSTEM=INTERNAL -DEMBREE_RAY_PACKETS=ON -DEMBREE_FILTER_FUNCTION=ON \
    -DEMBREE_GEOMETRY_TRIANGLE=ON -DEMBREE_GEOMETRY_QUAD=OFF -DEMBREE_GEOMETRY_CURVE=OFF \
    -DEMBREE_GEOMETRY_SUBDIVISION=OFF -DEMBREE_GEOMETRY_USER=OFF -DEMBREE_GEOMETRY_INSTANCE=OFF \
    -DEMBREE_GEOMETRY_GRID=OFF -DEMBREE_GEOMETRY_POINT=OFF \
    -DEMBREE_MAX_ISA=NONE -DEMBREE_ISA_SSE2=ON -DEMBREE_ISA_SSE42=ON -DEMBREE_ISA_AVX=ON -DEMBREE_ISA_AVX2=ON \
    -DEMBREE_ISA_AVX512=OFF -DEMBREE_IGNORE_CMAKE_CXX_FLAGS=OFF
}
