# GoogleTest's headers are most of what the compiler reads of a test; it reads them once.
file(CONFIGURE OUTPUT gtest_headers.cpp CONTENT "")
add_library(vardo_gtest_headers OBJECT ${CMAKE_CURRENT_BINARY_DIR}/gtest_headers.cpp)
target_link_libraries(vardo_gtest_headers PRIVATE vardo_options GTest::gmock)
target_precompile_headers(vardo_gtest_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)

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
