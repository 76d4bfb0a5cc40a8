# The installed tree. The core's folder is complete and can be moved: its install values lead to the
# folders beside the library.
#
#   lib/mirvane/                 libcore, libmirvane_sdk
#   lib/mirvane/plugins/         tools
#   lib/mirvane/data/unidevice/  device drivers
#   lib/mirvane/doc/             documentation
#   lib/cmake/Mirvane/           find_package(Mirvane)
#   include/mirvane/             the SDK's headers
#   bin/                         the stage

include(CMakePackageConfigHelpers)
set(package_dir lib/cmake/Mirvane)

install(TARGETS core LIBRARY DESTINATION ${MIRVANE_LIB_DIR})
install(TARGETS mirvane_sdk EXPORT MirvaneTargets ARCHIVE DESTINATION ${MIRVANE_LIB_DIR})
install(EXPORT MirvaneTargets NAMESPACE Mirvane:: DESTINATION ${package_dir})

# A room named sdk or contract is public as a whole.
file(GLOB_RECURSE public_headers CONFIGURE_DEPENDS RELATIVE "${CMAKE_SOURCE_DIR}/src"
     "${CMAKE_SOURCE_DIR}/src/*.h")
list(FILTER public_headers INCLUDE REGEX "/(sdk|contract)/[^/]*$")
foreach(header IN LISTS public_headers)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${CMAKE_SOURCE_DIR}/src/${header}" DESTINATION include/mirvane/${folder})
endforeach()

install(DIRECTORY "${CMAKE_SOURCE_DIR}/docs/" DESTINATION ${MIRVANE_DOC_DIR})
install(FILES "${CMAKE_SOURCE_DIR}/README.md" DESTINATION ${MIRVANE_DOC_DIR})

set(MIRVANE_CORE_PATH ${MIRVANE_LIB_DIR}/${CMAKE_SHARED_LIBRARY_PREFIX}core${CMAKE_SHARED_LIBRARY_SUFFIX})
set(MIRVANE_TOOL_PATH ${MIRVANE_KIND_DIR_tool})
set(MIRVANE_DRIVER_PATH ${MIRVANE_KIND_DIR_driver})
configure_package_config_file(
  "${CMAKE_SOURCE_DIR}/cmake/MirvaneConfig.cmake.in" "${CMAKE_BINARY_DIR}/MirvaneConfig.cmake"
  INSTALL_DESTINATION ${package_dir}
  PATH_VARS MIRVANE_CORE_PATH MIRVANE_TOOL_PATH MIRVANE_DRIVER_PATH
  NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/MirvaneConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/MirvaneConfig.cmake"
              "${CMAKE_BINARY_DIR}/MirvaneConfigVersion.cmake"
              "${CMAKE_SOURCE_DIR}/cmake/MirvaneModule.cmake"
              "${CMAKE_SOURCE_DIR}/cmake/tool_exports.map"
              "${CMAKE_SOURCE_DIR}/cmake/driver_exports.map"
        DESTINATION ${package_dir})
