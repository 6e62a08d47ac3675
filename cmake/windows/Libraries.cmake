# What finding and using the libraries takes on Windows; included by QuorvaneDependencies before and after it looks them up.
if(CMAKE_CROSSCOMPILING)
  # Only what was built for Windows is seen, by pkg-config too.
  set(ENV{PKG_CONFIG_LIBDIR} ${QUORVANE_WINDOWS_PREFIX}/lib/pkgconfig)
  # Nothing that would need a DLL of the compiler's.
  set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
endif()

# By its own CMake files: CMake's module asks the wx-config of the system that builds.
set(QUORVANE_WX_MODE CONFIG)

# What a static FreeImage needs besides. (Its header declares types of Windows by itself: no source of ours takes it
# together with windows.h.)
function(use_freeimage_on_windows target)
  if(CMAKE_CROSSCOMPILING)
    find_package(TIFF REQUIRED)
    find_package(JPEG REQUIRED)
    find_package(PNG REQUIRED)
    find_package(ZLIB REQUIRED)
    target_compile_definitions(${target} INTERFACE FREEIMAGE_LIB)
    target_link_libraries(${target} INTERFACE TIFF::TIFF JPEG::JPEG PNG::PNG ZLIB::ZLIB)
  endif()
endfunction()

# What a static Assimp needs besides: archives, in which some models come.
function(use_assimp_on_windows target)
  if(CMAKE_CROSSCOMPILING)
    find_package(ZLIB REQUIRED)
    find_library(MINIZIP_LIBRARY minizip REQUIRED)
    target_link_libraries(${target} INTERFACE ${MINIZIP_LIBRARY} ZLIB::ZLIB)
  endif()
endfunction()

# What a static minizip needs besides.
function(use_minizip_on_windows target)
  if(CMAKE_CROSSCOMPILING)
    find_package(ZLIB REQUIRED)
    target_link_libraries(${target} INTERFACE ZLIB::ZLIB)
  endif()
endfunction()
