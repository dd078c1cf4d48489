# The environment of every test. Tests on a real archive run where OLMKIT_REAL_ARCHIVE names one;
# that variable is passed on as it is.
set(OLMKIT_TEST_ENVIRONMENT
  "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0"
  "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp:print_suppressions=0"
  "OLMKIT_SOURCE_DIR=${PROJECT_SOURCE_DIR}"
  "OLMKIT_BINARY_DIR=${PROJECT_BINARY_DIR}")
# A sanitized program is about ten times slower: sweeps then try fewer places. The value names the
# sanitizers.
if(OLMKIT_SANITIZE)
  list(APPEND OLMKIT_TEST_ENVIRONMENT "OLMKIT_SANITIZED=${OLMKIT_SANITIZE}")
endif()

# Adds a test program written with GoogleTest:
#   olmkit_add_test(NAME SOURCES a.cpp b.cpp LIBRARIES target... LABELS unit)
# ctest shows it as one test; run the program itself with --gtest_filter for a single case.
function(olmkit_add_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${name} ${TEST_SOURCES})
  target_link_libraries(${name} PRIVATE olmkit_flags ${TEST_LIBRARIES} GTest::gmock GTest::gtest_main)
  # Tests are compiled more often than they are run; and with -O3, g++ 12 warns of faults in
  # std::string that it does not have.
  target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O1>)
  # g++ takes the fixtures of a source that is compiled together with others for a header's.
  if(CMAKE_UNITY_BUILD)
    target_compile_options(${name} PRIVATE -Wno-subobject-linkage)
  endif()
  # All tests share the precompiled headers of the first.
  get_property(first_test GLOBAL PROPERTY OLMKIT_FIRST_TEST)
  if(first_test)
    target_precompile_headers(${name} REUSE_FROM ${first_test})
  else()
    target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
    set_property(GLOBAL PROPERTY OLMKIT_FIRST_TEST ${name})
  endif()
  olmkit_add_test_command(${name} "${TEST_LABELS}" ${name})
endfunction()

# Adds a script written with Python's unittest as one test:
#   olmkit_add_python_test(NAME LABELS SCRIPT)
# Its output names every case, so that tools/list-skipped can name those that were skipped.
function(olmkit_add_python_test name labels script)
  olmkit_add_test_command(${name} "${labels}" ${OLMKIT_PYTHON} -B ${script} -v)
endfunction()

# Adds any command as a test:
#   olmkit_add_test_command(NAME LABELS COMMAND ARGUMENT...)
function(olmkit_add_test_command name labels)
  add_test(NAME ${name} COMMAND ${ARGN} WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR})
  set_tests_properties(${name} PROPERTIES LABELS "${labels}" ENVIRONMENT "${OLMKIT_TEST_ENVIRONMENT}")
endfunction()
