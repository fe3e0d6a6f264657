# Installs the library and the files with which programs outside of this tree find it:
#
#   vesk::client    the library and include/: for applications in C
#   vesk::service   vesk::client, the platform's headers and libraries: for processes that derive from the classes
#                   of <com/qv/...>
#
# vesk_client.pc and vesk_service.pc are the same for pkg-config. The host platform is the component "platform",
# since a device has the real one.

include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vesk_client)

install(TARGETS vesk_client vesk_service EXPORT vesk_client
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT client)
install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT client
  FILES_MATCHING PATTERN "*.h" PATTERN "*.hpp" PATTERN "*.def")
if(VESK_PLATFORM STREQUAL "host")
  install(TARGETS log utils binder EXPORT vesk_client
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT platform)
  install(DIRECTORY platform/include/ DESTINATION ${VESK_PLATFORM_INCLUDEDIR} COMPONENT platform)
else()
  install(FILES cmake/VeskSystemPlatform.cmake DESTINATION ${package_dir} COMPONENT client)
endif()
install(EXPORT vesk_client NAMESPACE vesk:: FILE vesk_clientTargets.cmake DESTINATION ${package_dir}
  COMPONENT client)

configure_package_config_file(cmake/vesk_clientConfig.cmake.in ${CMAKE_BINARY_DIR}/package/vesk_clientConfig.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/package/vesk_clientConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/package/vesk_clientConfig.cmake
              ${CMAKE_BINARY_DIR}/package/vesk_clientConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT client)

# Paths in the .pc files are relative to the files, so that the tree can be moved, unless its folders were
# configured as absolute paths.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  string(REPLACE " " "\\ " pc_libdir "${CMAKE_INSTALL_FULL_LIBDIR}")
  string(REPLACE " " "\\ " pc_includedir "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
else()
  file(RELATIVE_PATH pc_includedir ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})
  set(pc_libdir "\${pcfiledir}/..")
  set(pc_includedir "\${pcfiledir}/${pc_includedir}")
endif()
if(VESK_PLATFORM STREQUAL "host")
  cmake_path(GET VESK_PLATFORM_INCLUDEDIR FILENAME platform_folder)
  set(pc_platform_cflags "-I\${includedir}/${platform_folder}")
else()
  set(pc_platform_cflags "${VESK_PLATFORM_CXX_FLAGS}")
endif()
foreach(module vesk_client vesk_service)
  configure_file(cmake/${module}.pc.in ${CMAKE_BINARY_DIR}/package/${module}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/package/${module}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT client)
endforeach()
