# Every library that the program is made of, looked up in one place.
find_package(Threads REQUIRED)
find_package(Eigen3 3.4 REQUIRED NO_MODULE)

if(NOT QUORVANE_LINK_ONLY)
  find_package(embree 3.13 REQUIRED)
  find_package(OpenMP REQUIRED COMPONENTS CXX)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(hwy REQUIRED IMPORTED_TARGET libhwy)
  if(NOT WIN32)
    pkg_check_modules(cairo REQUIRED IMPORTED_TARGET cairo)
  endif()
  find_package(wxWidgets 3.2 REQUIRED COMPONENTS core base)
  find_library(FREEIMAGE_LIBRARY freeimage REQUIRED)
  find_path(FREEIMAGE_INCLUDE_DIR FreeImage.h REQUIRED)

  add_library(quorvane_freeimage INTERFACE)
  target_include_directories(quorvane_freeimage SYSTEM INTERFACE ${FREEIMAGE_INCLUDE_DIR})
  target_link_libraries(quorvane_freeimage INTERFACE ${FREEIMAGE_LIBRARY})

  add_library(quorvane_wx INTERFACE)
  target_include_directories(quorvane_wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
  target_compile_definitions(quorvane_wx INTERFACE ${wxWidgets_DEFINITIONS})
  target_compile_options(quorvane_wx INTERFACE ${wxWidgets_CXX_FLAGS})
  target_link_libraries(quorvane_wx INTERFACE ${wxWidgets_LIBRARIES})
endif()

if(QUORVANE_HOST AND NOT QUORVANE_LINK_ONLY)
  # Not by assimp's own CMake files, which name targets of libraries that their packages do not offer.
  pkg_check_modules(assimp REQUIRED IMPORTED_TARGET assimp>=5.2)
  find_package(nlohmann_json 3.11 REQUIRED)
endif()

if(QUORVANE_TESTS)
  find_package(GTest REQUIRED)
endif()
