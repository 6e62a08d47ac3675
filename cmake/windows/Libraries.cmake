# What finding and using the libraries takes on Windows; included by QuorvaneDependencies before and after it looks them up.
if(CMAKE_CROSSCOMPILING)
  # Only what was built for Windows is seen, by pkg-config too.
  set(ENV{PKG_CONFIG_LIBDIR} ${QUORVANE_WINDOWS_PREFIX}/lib/pkgconfig)
endif()

# By its own CMake files: CMake's module asks the wx-config of the system that builds.
set(QUORVANE_WX_MODE CONFIG)

# FreeImage's header declares types of Windows by itself unless they are there already, and then windows.h gets lost.
function(use_freeimage_on_windows target)
  if(MSVC)
    target_compile_options(${target} INTERFACE /FIwindows.h)
  else()
    target_compile_options(${target} INTERFACE "SHELL:-include windows.h")
  endif()
  if(CMAKE_CROSSCOMPILING)
    find_package(TIFF REQUIRED)
    find_package(JPEG REQUIRED)
    find_package(PNG REQUIRED)
    find_package(ZLIB REQUIRED)
    target_compile_definitions(${target} INTERFACE FREEIMAGE_LIB)
    target_link_libraries(${target} INTERFACE TIFF::TIFF JPEG::JPEG PNG::PNG ZLIB::ZLIB)
  endif()
endfunction()
