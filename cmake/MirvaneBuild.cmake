# What every target of the project is built with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_library(mirvane_options INTERFACE)
target_compile_options(mirvane_options INTERFACE -Wall -Wextra -Wpedantic -Werror)

if(MIRVANE_SANITIZE)
  # Objects cross library borders by design, each side with its own hidden type information:
  # the vptr check would compare the wrong names.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(MIRVANE_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize=vptr
                      -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# mirvane_module(NAME SOURCES...): a tool or driver library, loaded at run time, that stands on the
# SDK alone. Its exports are marked in its sources.
function(mirvane_module name)
  add_library(${name} MODULE ${ARGN})
  set_target_properties(${name} PROPERTIES PREFIX "")
  target_link_libraries(${name} PRIVATE Mirvane::sdk mirvane_options)
endfunction()

# mirvane_test(NAME SOURCES... [LIBS libs...]): one GoogleTest program, its cases found at test time.
function(mirvane_test name)
  cmake_parse_arguments(arg "" "" "LIBS" ${ARGN})
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE ${arg_LIBS} mirvane_options GTest::gtest GTest::gmock
                                        GTest::gtest_main)
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  include(GoogleTest)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()
