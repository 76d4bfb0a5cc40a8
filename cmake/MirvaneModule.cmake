# mirvane_module(NAME [KIND tool|driver] SOURCES...): a library of tools or of a device driver,
# loaded at run time, that links only the SDK. Part of the installed package.
#
# With a KIND, only the two functions that the core looks up are exported, so that libraries that
# were built apart share no template code of the standard library by accident.

set(MIRVANE_MODULE_EXPORTS_DIR "${CMAKE_CURRENT_LIST_DIR}")

function(mirvane_module name)
  cmake_parse_arguments(arg "" "KIND" "" ${ARGN})
  add_library(${name} MODULE ${arg_UNPARSED_ARGUMENTS})
  set_target_properties(${name} PROPERTIES PREFIX "")
  target_link_libraries(${name} PRIVATE Mirvane::sdk $<TARGET_NAME_IF_EXISTS:mirvane_options>)
  if(NOT arg_KIND)
    return()
  endif()
  if(NOT arg_KIND MATCHES "^(tool|driver)$")
    message(FATAL_ERROR "mirvane_module(${name}): KIND is tool or driver, not ${arg_KIND}")
  endif()
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    set(map "${MIRVANE_MODULE_EXPORTS_DIR}/${arg_KIND}_exports.map")
    target_link_options(${name} PRIVATE "LINKER:--version-script=${map}")
    set_target_properties(${name} PROPERTIES LINK_DEPENDS "${map}")
  endif()
endfunction()
