# quorvane_room(NAME SOURCES ... [USES target ...] [PRIVATE_USES target ...])
#
# One folder of src as one static library. A room includes only headers of the rooms that it names here; the
# targets that it names are all that its code can link against.
function(quorvane_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;USES;PRIVATE_USES" ${ARGN})
  add_library(quorvane_${name} STATIC ${ROOM_SOURCES})
  target_link_libraries(quorvane_${name} PUBLIC quorvane_options ${ROOM_USES} PRIVATE ${ROOM_PRIVATE_USES})
endfunction()

# quorvane_test(NAME SOURCES ... USES target ... [LABELS label ...] [TIMEOUT seconds])
#
# One GoogleTest program, run by ctest as one test a case.
function(quorvane_test name)
  cmake_parse_arguments(TEST "" "TIMEOUT" "SOURCES;USES;LABELS" ${ARGN})
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 120)
  endif()
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE quorvane_options ${TEST_USES} GTest::gmock_main GTest::gtest)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  include(GoogleTest)
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT ${TEST_TIMEOUT} LABELS "${TEST_LABELS}")
endfunction()
