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
# One GoogleTest program, run by ctest as one test a case (as one altogether in a cross build). Those with the label
# threads are run with the thread sanitizer too; the target quorvane_thread_tests builds all of these.
function(quorvane_test name)
  cmake_parse_arguments(TEST "" "TIMEOUT" "SOURCES;USES;LABELS" ${ARGN})
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 120)
  endif()
  if(QUORVANE_SANITIZE)
    math(EXPR TEST_TIMEOUT "${TEST_TIMEOUT} * 3")
  endif()

  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE quorvane_options ${TEST_USES} GTest::gmock_main GTest::gtest)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
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
