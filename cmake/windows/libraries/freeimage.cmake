cmake_minimum_required(VERSION 3.25)
project(FreeImage VERSION 3.18.0 LANGUAGES C CXX)
find_package(ZLIB REQUIRED)
find_package(JPEG REQUIRED)
find_package(PNG REQUIRED)
find_package(TIFF REQUIRED)

file(GLOB sources Source/FreeImage/*.cpp Source/FreeImageToolkit/*.cpp Source/Metadata/*.cpp)
# What would need OpenEXR, OpenJPEG, LibRaw, WebP or JPEG XR, and the parts that reach into the JPEG library's insides.
list(FILTER sources EXCLUDE REGEX "/(PluginEXR|PluginJ2K|PluginJP2|J2KHelper|PluginRAW|PluginWebP|PluginJXR|JPEGTransform)\\.cpp$")

add_library(freeimage STATIC ${sources} LeftOut.cpp)
target_include_directories(freeimage PRIVATE Source Source/Metadata Source/FreeImageToolkit)
target_include_directories(freeimage PRIVATE ${IMATH_HEADERS})
target_compile_definitions(freeimage PRIVATE FREEIMAGE_LIB IMATH_HALF_NO_LOOKUP_TABLE)
target_compile_options(freeimage PRIVATE -w)
# Before FreeImage's header, which declares types of Windows by itself where they are missing.
set_source_files_properties(LeftOut.cpp PROPERTIES COMPILE_OPTIONS "-include;windows.h")
target_link_libraries(freeimage PRIVATE TIFF::TIFF JPEG::JPEG PNG::PNG ZLIB::ZLIB)

install(TARGETS freeimage DESTINATION lib)
install(FILES Source/FreeImage.h DESTINATION include)
