# Flags every target shares, and the two functions that make targets.

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()

add_library(lorvane_flags INTERFACE)
target_compile_options(lorvane_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion)
if(LORVANE_WERROR)
  target_compile_options(lorvane_flags INTERFACE -Werror)
endif()
if(LORVANE_SANITIZE)
  target_compile_options(lorvane_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(lorvane_flags INTERFACE -fsanitize=address,undefined)
endif()
if(LORVANE_FUZZ)
  target_compile_options(lorvane_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# lorvane_library(NAME ROOT SOURCES...): a static library whose headers are named from ROOT (src or platform), as "text/Tags.h".
function(lorvane_library name root)
  add_library(${name} STATIC ${ARGN})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/${root})
  target_link_libraries(${name} PUBLIC lorvane_flags)
endfunction()

# What the tests themselves are compiled with. Under sanitizers they are half of a build's time and little of a run's, so they are left unoptimised.
add_library(lorvane_test_flags INTERFACE)
target_link_libraries(lorvane_test_flags INTERFACE lorvane_flags)
if(LORVANE_SANITIZE)
  target_compile_options(lorvane_test_flags INTERFACE -O0)
endif()

# lorvane_test(NAME [LONG_CASES] LIBRARIES... SOURCES files...): one GoogleTest program. CTest runs it suite by suite, as NAME.Suite. LONG_CASES is for programs
# that play the same steps over and over: CTest runs them case by case, side by side.
function(lorvane_test name)
  cmake_parse_arguments(ARG "LONG_CASES" "" "LIBRARIES;SOURCES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gtest_main lorvane_test_flags)
  target_compile_definitions(${name} PRIVATE LORVANE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")

  set(list ${CMAKE_CURRENT_BINARY_DIR}/${name}_tests.cmake)
  add_custom_command(TARGET ${name} POST_BUILD BYPRODUCTS ${list} VERBATIM COMMAND ${CMAKE_COMMAND} -D PROGRAM=$<TARGET_FILE:${name}> -D NAME=${name}
    -D LONG_CASES=${ARG_LONG_CASES} -D LIST=${list} -P ${PROJECT_SOURCE_DIR}/cmake/ListTests.cmake)
  set(include ${CMAKE_CURRENT_BINARY_DIR}/${name}_include.cmake)
  file(WRITE ${include} "if(EXISTS [==[${list}]==])\n  include([==[${list}]==])\nelse()\n  add_test(${name}_NOT_BUILT ${name}_NOT_BUILT)\nendif()\n")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${include})
endfunction()
