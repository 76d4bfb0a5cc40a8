# The options of every target of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_library(mirvane_options INTERFACE)
target_compile_options(mirvane_options INTERFACE -Wall -Wextra -Wpedantic -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 sees overlapping copies in every optimised `"literal" + string`.
  target_compile_options(mirvane_options INTERFACE -Wno-restrict)
endif()

if(MIRVANE_SANITIZE)
  # Objects cross library borders by design, and each side has its own hidden type information, so
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

# The build folder has the shape of an installed tree, so that programs find the core, and the core
# finds its tools and drivers, in both in the same way: the install values lead to folders beside
# the library.
set(MIRVANE_LIB_DIR lib/mirvane)
set(MIRVANE_KIND_DIR_tool ${MIRVANE_LIB_DIR}/plugins)
set(MIRVANE_KIND_DIR_driver ${MIRVANE_LIB_DIR}/data/unidevice)
set(MIRVANE_DOC_DIR ${MIRVANE_LIB_DIR}/doc)
set(MIRVANE_BIN_DIR bin)

include(MirvaneModule)

# mirvane_install_module(NAME KIND tool|driver SOURCES...): a module that is part of the product.
function(mirvane_install_module name)
  mirvane_module(${name} ${ARGN})
  cmake_parse_arguments(arg "" "KIND" "" ${ARGN})
  set(folder ${MIRVANE_KIND_DIR_${arg_KIND}})
  set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY
                                           "${CMAKE_BINARY_DIR}/${folder}")
  install(TARGETS ${name} LIBRARY DESTINATION ${folder})
endfunction()

# mirvane_program(NAME SOURCES...): a program of the product, in bin/.
function(mirvane_program name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE mirvane_options)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY
                                           "${CMAKE_BINARY_DIR}/${MIRVANE_BIN_DIR}")
  install(TARGETS ${name} RUNTIME DESTINATION ${MIRVANE_BIN_DIR})
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
