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

# lorvane_test(NAME [PREFIX text] LIBRARIES... SOURCES files...): one GoogleTest program, each case known to CTest, with the prefix in front of its name.
function(lorvane_test name)
  cmake_parse_arguments(ARG "" "PREFIX" "LIBRARIES;SOURCES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gtest_main lorvane_flags)
  target_compile_definitions(${name} PRIVATE LORVANE_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  gtest_discover_tests(${name} TEST_PREFIX "${ARG_PREFIX}" DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300)
endfunction()
