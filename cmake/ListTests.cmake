# Writes the list of tests that CTest reads, asked from the GoogleTest program itself: -D PROGRAM -D NAME -D LONG_CASES -D LIST -P ListTests.cmake
# A suite is one test, so that thousands of cases need not each start a process under the sanitizers.
execute_process(COMMAND ${PROGRAM} --gtest_list_tests OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)

# What follows "#" tells a parameter's value, in any characters.
string(REGEX REPLACE " +#[^\n]*" "" listing "${listing}")
string(REPLACE "\n" ";" lines "${listing}")

set(tests "")
function(append_test name filter)
  string(APPEND tests "add_test([==[${name}]==] [==[${PROGRAM}]==] --gtest_filter=${filter})\n"
    "set_tests_properties([==[${name}]==] PROPERTIES TIMEOUT 300 SKIP_REGULAR_EXPRESSION [==[\\[  SKIPPED \\]]==] ${ARGN})\n")
  set(tests "${tests}" PARENT_SCOPE)
endfunction()

foreach(line IN LISTS lines)
  if(line MATCHES "^([A-Za-z0-9_/]+)\\.$")
    set(suite ${CMAKE_MATCH_1})
    if(NOT LONG_CASES)
      append_test(${NAME}.${suite} ${suite}.*)
    endif()
  elseif(line MATCHES "^  ([A-Za-z0-9_/]+)$")
    set(case ${suite}.${CMAKE_MATCH_1})
    # The program passes it over in silence. Here it becomes a test that did not run, which CI refuses.
    if(case MATCHES "DISABLED_")
      append_test(${NAME}.${case} ${case} DISABLED TRUE)
    elseif(LONG_CASES)
      append_test(${NAME}.${case} ${case})
    endif()
  elseif(NOT line MATCHES "^(Running main.*)?$")
    message(FATAL_ERROR "${PROGRAM} lists what is neither a suite nor a case: ${line}")
  endif()
endforeach()

if(tests STREQUAL "")
  message(FATAL_ERROR "${PROGRAM} lists no tests")
endif()
file(WRITE ${LIST} "${tests}")
