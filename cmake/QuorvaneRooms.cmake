# quorvane_headers(NAME KIND library|program HEADERS header ... USES target ...)
#
# Headers that many sources begin with and that take longer to compile than what follows them: they are compiled once,
# for all rooms or tests that say so. GCC takes the result only for the options that it was made with, so there is one
# for each kind of target, with and without wxWidgets; where they do not match, -Winvalid-pch fails the build. Nothing
# depends on it: a source includes what it uses, and CMAKE_DISABLE_PRECOMPILE_HEADERS gives the same programs.
#
# Programs are compiled with -fPIE, libraries with -fPIC. A room with options of its own compiles the headers itself.
function(quorvane_headers name)
  cmake_parse_arguments(HEADERS "" "KIND" "HEADERS;USES" ${ARGN})
  set(source ${CMAKE_SOURCE_DIR}/cmake/NoProgram.cpp)
  if(HEADERS_KIND STREQUAL "program")
    add_executable(${name} ${source})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
  else()
    add_library(${name} OBJECT ${source})
  endif()
  target_link_libraries(${name} PRIVATE quorvane_options ${HEADERS_USES})
  target_precompile_headers(${name} PRIVATE ${HEADERS_HEADERS})
endfunction()

set(QUORVANE_COMMON_HEADERS
  <algorithm> <array> <atomic> <chrono> <cmath> <cstdint> <cstring> <filesystem> <fstream> <functional> <limits> <map>
  <memory> <mutex> <numbers> <optional> <span> <sstream> <string> <thread> <utility> <vector> <Eigen/Geometry>)
quorvane_headers(quorvane_room_headers KIND library
  HEADERS ${QUORVANE_COMMON_HEADERS}
  USES Eigen3::Eigen)
if(QUORVANE_WX)
  quorvane_headers(quorvane_room_headers_wx KIND library
    HEADERS ${QUORVANE_COMMON_HEADERS} <wx/wx.h>
    USES Eigen3::Eigen quorvane_wx)
endif()
if(QUORVANE_TESTS)
  set(QUORVANE_TEST_HEADERS ${QUORVANE_COMMON_HEADERS} <gmock/gmock.h> <gtest/gtest.h>)
  quorvane_headers(quorvane_test_headers KIND program
    HEADERS ${QUORVANE_TEST_HEADERS}
    USES Eigen3::Eigen GTest::gmock)
  if(QUORVANE_WX)
    quorvane_headers(quorvane_test_headers_wx KIND program
      HEADERS ${QUORVANE_TEST_HEADERS} <wx/wx.h>
      USES Eigen3::Eigen quorvane_wx GTest::gmock)
  endif()
endif()

function(quorvane_load_headers target headers wx)
  if(wx)
    string(APPEND headers _wx)
  endif()
  target_precompile_headers(${target} REUSE_FROM ${headers})
endfunction()

# quorvane_room(NAME [WX] SOURCES ... [USES target ...] [PRIVATE_USES target ...] [OPTIONS option ...])
#
# One folder of src as one static library. A room includes only headers of the rooms that it names here; the
# targets that it names are all that its code can link against. WX for those that use wxWidgets, themselves or through
# others; OPTIONS for the compiler.
function(quorvane_room name)
  cmake_parse_arguments(ROOM "WX" "" "SOURCES;USES;PRIVATE_USES;OPTIONS" ${ARGN})
  add_library(quorvane_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(quorvane_${name} PUBLIC quorvane_options ${ROOM_USES} PRIVATE ${ROOM_PRIVATE_USES})
  target_compile_options(quorvane_${name} PRIVATE ${ROOM_OPTIONS})
  if(ROOM_OPTIONS AND ROOM_WX)
    message(FATAL_ERROR "quorvane_room: headers with wxWidgets are there only without options of a room's own")
  elseif(ROOM_OPTIONS)
    target_precompile_headers(quorvane_${name} PRIVATE ${QUORVANE_COMMON_HEADERS})
  else()
    quorvane_load_headers(quorvane_${name} quorvane_room_headers "${ROOM_WX}")
  endif()
endfunction()

# quorvane_test(NAME [WX] SOURCES ... USES target ... [LABELS label ...] [TIMEOUT seconds])
#
# One GoogleTest program, run by ctest as one test a case (as one altogether in a cross build). WX as for rooms. Those
# with the label threads are run with the thread sanitizer too; the target quorvane_thread_tests builds all of these.
function(quorvane_test name)
  cmake_parse_arguments(TEST "WX" "TIMEOUT" "SOURCES;USES;LABELS" ${ARGN})
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 120)
  endif()
  if(QUORVANE_SANITIZE)
    math(EXPR TEST_TIMEOUT "${TEST_TIMEOUT} * 3")
  endif()

  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE quorvane_options ${TEST_USES} GTest::gmock_main GTest::gtest)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  quorvane_load_headers(${name} quorvane_test_headers "${TEST_WX}")
  if(NOT TARGET quorvane_thread_tests)
    add_custom_target(quorvane_thread_tests)
  endif()
  if("threads" IN_LIST TEST_LABELS)
    add_dependencies(quorvane_thread_tests ${name})
  endif()

  if(CMAKE_CROSSCOMPILING)
    # Run by an emulator, where each start takes long: the whole program is one test.
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 900 LABELS "${TEST_LABELS}")
    return()
  endif()

  include(GoogleTest)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 TEST_LIST ${name}_cases
    PROPERTIES TIMEOUT ${TEST_TIMEOUT})
  if(TEST_LABELS)
    # gtest_discover_tests does not bring a list through, so the labels are set where ctest reads the cases.
    set(labels_file ${CMAKE_CURRENT_BINARY_DIR}/${name}_labels.cmake)
    file(CONFIGURE OUTPUT ${labels_file} @ONLY CONTENT
      "if(@name@_cases)\n  set_tests_properties(\${@name@_cases} PROPERTIES LABELS \"@TEST_LABELS@\")\nendif()\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${labels_file})
  endif()
endfunction()

# quorvane_source_paths(SOURCES source ... PATHS NAME=path ...)
#
# Macros with paths, as strings, for these sources alone: all others of their target are compiled alike wherever the tree
# lies, so that the compiler's cache knows them.
function(quorvane_source_paths)
  cmake_parse_arguments(GIVEN "" "" "SOURCES;PATHS" ${ARGN})
  foreach(path ${GIVEN_PATHS})
    string(REGEX REPLACE "=(.*)" "=\"\\1\"" definition "${path}")
    set_property(SOURCE ${GIVEN_SOURCES} APPEND PROPERTY COMPILE_DEFINITIONS "${definition}")
  endforeach()
endfunction()
