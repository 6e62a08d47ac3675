cmake_minimum_required(VERSION 3.25)
project(minizip VERSION 1.2.13 LANGUAGES C)
find_package(ZLIB REQUIRED)

add_library(minizip STATIC ioapi.c iowin32.c unzip.c zip.c)
target_link_libraries(minizip PUBLIC ZLIB::ZLIB)

install(TARGETS minizip DESTINATION lib)
install(FILES ioapi.h iowin32.h unzip.h zip.h DESTINATION include/minizip)

file(CONFIGURE OUTPUT minizip.pc @ONLY CONTENT
"Name: minizip
Description: Files in zip archives
Version: @PROJECT_VERSION@
Cflags: -I@CMAKE_INSTALL_PREFIX@/include/minizip
Libs: -L@CMAKE_INSTALL_PREFIX@/lib -lminizip
")
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/minizip.pc DESTINATION lib/pkgconfig)
