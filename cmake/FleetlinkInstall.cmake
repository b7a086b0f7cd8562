# Headers, libraries, programs and the CMake package. All paths in the package are relative to where it lies.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Fleetlink")

set_target_properties(Lib_Bedrock PROPERTIES EXPORT_NAME Bedrock)
set_target_properties(Lib_Hostenv PROPERTIES EXPORT_NAME Hostenv)
set_target_properties(Lib_Livefeed PROPERTIES EXPORT_NAME Livefeed)
set_target_properties(Lib_Rewind PROPERTIES EXPORT_NAME Rewind)

install(TARGETS Lib_Bedrock Lib_Hostenv Lib_Livefeed Lib_Rewind Fleetlink EXPORT FleetlinkTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/fleetlink"
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(FILES "${CMAKE_SOURCE_DIR}/src/fleetlink/fleetlink.h" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/fleetlink")
install(DIRECTORY "${CMAKE_SOURCE_DIR}/lang/" DESTINATION "${CMAKE_INSTALL_DATADIR}/fleetlink/lang"
  FILES_MATCHING PATTERN "*.xml")
if(FLEETLINK_BUILD_CLIENT)
  install(TARGETS fleetlink-client RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
if(FLEETLINK_BUILD_VIRTUALNVR)
  install(TARGETS virtualnvr-server RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  install(DIRECTORY "${CMAKE_SOURCE_DIR}/virtualnvr/data/" DESTINATION "${CMAKE_INSTALL_DATADIR}/fleetlink/virtualnvr")
endif()

install(EXPORT FleetlinkTargets NAMESPACE Fleetlink:: DESTINATION "${package_dir}")
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/FleetlinkConfig.cmake.in"
  "${CMAKE_BINARY_DIR}/FleetlinkConfig.cmake" INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/FleetlinkConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${CMAKE_BINARY_DIR}/FleetlinkConfig.cmake" "${CMAKE_BINARY_DIR}/FleetlinkConfigVersion.cmake"
  DESTINATION "${package_dir}")
