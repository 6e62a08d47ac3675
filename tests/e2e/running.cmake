# Read by ctest after the cases of e2e_tests. The windows' library parses its style sheets by functions that check the whole
# rest of the text at each call if they are told to be strict, a good part of the time of each viewer; the other tests have
# this check of the address sanitizer.
if(e2e_tests_cases)
  set_tests_properties(${e2e_tests_cases} PROPERTIES
    ENVIRONMENT_MODIFICATION ASAN_OPTIONS=string_append::strict_string_checks=0)
endif()
