# Builds for 64-bit Windows on Debian, with GCC of the packages g++-mingw-w64-x86-64-posix.
#
# QUORVANE_WINDOWS_PREFIX: folders that hold libraries built for Windows, as a list; tools/windows makes the one that is
# its default.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_AR x86_64-w64-mingw32-gcc-ar-posix)
set(CMAKE_RANLIB x86_64-w64-mingw32-gcc-ranlib-posix)

# GCC does not keep the stack of a Win64 function aligned beyond 16 bytes, so the assembler writes moves that need no
# alignment where GCC asks for ones that do (GCC bug 54412); they cost the same.
set(CMAKE_C_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")
set(CMAKE_CXX_FLAGS_INIT "-Wa,-muse-unaligned-vector-move")
# The runtime libraries go into the program: it needs no DLL but the system's own. The same sources give the same file.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--no-insert-timestamp")

if(NOT DEFINED QUORVANE_WINDOWS_PREFIX)
  set(QUORVANE_WINDOWS_PREFIX ${CMAKE_CURRENT_LIST_DIR}/../build/windows-libraries)
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUORVANE_WINDOWS_PREFIX)
set(CMAKE_FIND_ROOT_PATH ${QUORVANE_WINDOWS_PREFIX} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/windows/wine-run)
