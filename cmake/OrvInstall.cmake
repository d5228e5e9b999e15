# Installs the library, its headers, the command, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

install(
  TARGETS orv
  EXPORT orvTargets
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(
  DIRECTORY "${PROJECT_SOURCE_DIR}/include/orv"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  FILES_MATCHING
  PATTERN "*.h")
if(TARGET orv_cli)
  install(TARGETS orv_cli RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

set(orvPackageDir "${CMAKE_INSTALL_LIBDIR}/cmake/orv")
configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/orvConfig.cmake.in" "${PROJECT_BINARY_DIR}/orvConfig.cmake"
  INSTALL_DESTINATION "${orvPackageDir}")
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/orvConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/orvConfig.cmake" "${PROJECT_BINARY_DIR}/orvConfigVersion.cmake"
        DESTINATION "${orvPackageDir}")
install(
  EXPORT orvTargets
  NAMESPACE orv::
  DESTINATION "${orvPackageDir}")

# The prefix is found from where the .pc file lies, so that an installed tree can be moved and
# `cmake --install --prefix` needs no second configuration.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY
           "${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig" OUTPUT_VARIABLE orvPcPrefix)
configure_file("${CMAKE_CURRENT_LIST_DIR}/orv.pc.in" "${PROJECT_BINARY_DIR}/orv.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/orv.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
