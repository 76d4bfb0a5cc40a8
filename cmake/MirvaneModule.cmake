# mirvane_module(NAME [KIND tool|driver] SOURCES...)
# mirvane_module(NAME KIND adaptor EXPORTS names... SOURCES sources...)
#
# A library, loaded at run time, that stands on the SDK alone: of tools, of a device driver, or an
# adaptor. Part of the installed package.
#
# With a KIND nothing is exported but what the loader looks up, so that no template code of the
# standard library is shared by chance between libraries that were built apart. The core looks up two
# functions of a tool or a driver. An adaptor is loaded by its host, and only its author knows what
# that looks up: EXPORTS names it, as the linker sees it; mark each with MVR_EXPORT.
#
# Libraries of its own that it needs are found beside it, wherever it is copied to.
#
# An adaptor loads the core itself. MIRVANE_CORE_LIBRARY is a text in its sources, the path of the
# library in the package that it was built with: good for a start, and for tests. One that is shipped
# finds the library where its own installer put it.

set(MIRVANE_MODULE_EXPORTS_DIR "${CMAKE_CURRENT_LIST_DIR}")

function(mirvane_module name)
  cmake_parse_arguments(arg "" "KIND" "EXPORTS;SOURCES" ${ARGN})
  add_library(${name} MODULE ${arg_UNPARSED_ARGUMENTS} ${arg_SOURCES})
  set(beside "$ORIGIN")
  if(APPLE)
    set(beside "@loader_path")
  endif()
  set_target_properties(${name} PROPERTIES PREFIX "" BUILD_RPATH "${beside}"
                                           INSTALL_RPATH "${beside}")
  target_link_libraries(${name} PRIVATE Mirvane::sdk $<TARGET_NAME_IF_EXISTS:mirvane_options>)
  if(NOT arg_KIND)
    return()
  endif()
  if(NOT arg_KIND MATCHES "^(tool|driver|adaptor)$")
    message(FATAL_ERROR
            "mirvane_module(${name}): KIND is tool, driver or adaptor, not ${arg_KIND}")
  endif()
  if(arg_KIND STREQUAL "adaptor" AND NOT arg_EXPORTS)
    message(FATAL_ERROR "mirvane_module(${name}): EXPORTS is to name what the host looks up")
  elseif(arg_EXPORTS AND NOT arg_KIND STREQUAL "adaptor")
    message(FATAL_ERROR "mirvane_module(${name}): EXPORTS is for adaptors")
  endif()

  set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden
                                           VISIBILITY_INLINES_HIDDEN ON)
  set(map "${MIRVANE_MODULE_EXPORTS_DIR}/${arg_KIND}_exports.map")
  if(arg_KIND STREQUAL "adaptor")
    set(map "${CMAKE_CURRENT_BINARY_DIR}/${name}_exports.map")
    list(JOIN arg_EXPORTS "; " names)
    file(CONFIGURE OUTPUT "${map}" CONTENT "{\n    global: @names@;\n    local: *;\n};\n" @ONLY)
    target_link_libraries(${name} PRIVATE ${CMAKE_DL_LIBS})
    target_compile_definitions(${name} PRIVATE MIRVANE_CORE_LIBRARY="${Mirvane_CORE_LIBRARY}")
  endif()
  if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    target_link_options(${name} PRIVATE "LINKER:--version-script=${map}")
    set_target_properties(${name} PROPERTIES LINK_DEPENDS "${map}")
  endif()
endfunction()
