# What `cmake --install` puts where: headers, libraries, the program with its page and completion, a CMake package and a
# pkg-config file, all of which may be moved together.
include(CMakePackageConfigHelpers)

set(kv_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/kv)

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(
  TARGETS kv kv_static
  EXPORT kvTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT kvTargets NAMESPACE kv:: DESTINATION ${kv_package_dir} COMPONENT development)
configure_package_config_file(cmake/kvConfig.cmake.in kvConfig.cmake INSTALL_DESTINATION ${kv_package_dir}
                              NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(kvConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kvConfig.cmake ${PROJECT_BINARY_DIR}/kvConfigVersion.cmake
        DESTINATION ${kv_package_dir} COMPONENT development)

# The file finds the rest from where it stands itself.
file(RELATIVE_PATH kv_prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" kv_prefix_from_pc "${kv_prefix_from_pc}")
configure_file(cmake/kv.pc.in kv.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kv.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(TARGETS kv_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
install(FILES docs/kv.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runtime)
install(FILES cmake/completion.bash RENAME kv DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        COMPONENT runtime)
install(FILES README.md LICENSE CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development FILES_MATCHING PATTERN "*.md")

set(CPACK_PACKAGE_VENDOR "The kv developers")
set(CPACK_PACKAGE_CONTACT "The kv developers <kv@example.org>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  # The package brings a library of its own.
  set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/triggers)
endif()
include(CPack)
