# Warnings, language level and sanitizers, in one interface target that every target of ours links.
option(QUORVANE_HOST "Build the host program" ON)
option(QUORVANE_TESTS "Build the tests" ON)
option(QUORVANE_BENCH "Build the benchmarks" ON)
option(QUORVANE_LINK_ONLY "Build only the rooms that the link needs (without the libraries of the others)" OFF)
set(QUORVANE_SANITIZE "" CACHE STRING "Sanitizers, as for -fsanitize: empty, address,undefined or thread")

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

find_program(QUORVANE_CCACHE ccache)
if(QUORVANE_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QUORVANE_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${QUORVANE_CCACHE})
endif()

add_library(quorvane_options INTERFACE)
target_compile_features(quorvane_options INTERFACE cxx_std_20)
target_compile_options(quorvane_options INTERFACE -Wall -Wextra -Werror)
# The standard library switches these off for its strings by pragmas, which GCC forgets in precompiled headers.
set(loads_headers
  $<OR:$<BOOL:$<TARGET_PROPERTY:PRECOMPILE_HEADERS>>,$<BOOL:$<TARGET_PROPERTY:PRECOMPILE_HEADERS_REUSE_FROM>>>)
if(NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
  target_compile_options(quorvane_options INTERFACE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,${loads_headers}>:-Wno-array-bounds;-Wno-stringop-overflow;-Wno-stringop-overread>)
endif()
target_include_directories(quorvane_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(QUORVANE_SANITIZE)
  target_compile_options(quorvane_options INTERFACE
    -fsanitize=${QUORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(quorvane_options INTERFACE -fsanitize=${QUORVANE_SANITIZE})
endif()
if(WIN32)
  target_compile_definitions(quorvane_options INTERFACE
    UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
endif()
