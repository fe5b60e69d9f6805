# GoogleTest's headers are most of what the compiler reads of a test; it reads them once.
vardo_headers(vardo_gtest_headers LIBRARIES GTest::gmock HEADERS <gmock/gmock.h> <gtest/gtest.h>)

# vardo_uses_gtest(TARGET lib...): links a program or library of tests with GoogleTest and those libraries.
function(vardo_uses_gtest target)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/tests/support)
  target_link_libraries(${target} PUBLIC ${ARGN} vardo_test_host vardo_options GTest::gmock)
  target_precompile_headers(${target} REUSE_FROM vardo_gtest_headers)
endfunction()

# vardo_gtest_program(NAME FILE... LIBRARIES lib...)
function(vardo_gtest_program name)
  cmake_parse_arguments(arg "" "" "LIBRARIES" ${ARGN})
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  vardo_uses_gtest(${name} ${arg_LIBRARIES} GTest::gtest_main)
endfunction()
