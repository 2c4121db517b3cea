# SPDX-License-Identifier: MIT
# What `cmake --install` puts where: headers, libraries, the program with its page and completion, a CMake package and a
# pkg-config file, all of which may be moved together; and what `cpack` packs of it.
include(CMakePackageConfigHelpers)

set(kv_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/kv)

install(DIRECTORY include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(
  TARGETS ${kv_libraries}
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
list(TRANSFORM kv_runtime_libraries PREPEND "-l" OUTPUT_VARIABLE kv_libs_private)
list(JOIN kv_libs_private " " kv_libs_private)
set(kv_libs "")
if(NOT "kv" IN_LIST kv_libraries)
  set(kv_libs " ${kv_libs_private}")
endif()
configure_file(cmake/kv.pc.in kv.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kv.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(TARGETS kv_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
if(NOT WIN32)
  install(FILES ${PROJECT_BINARY_DIR}/tools/kv/kv.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runtime)
  install(FILES cmake/completion/kv.bash RENAME kv DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
          COMPONENT runtime)
  install(FILES cmake/completion/kv.zsh RENAME _kv DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
          COMPONENT runtime)
  install(FILES cmake/completion/kv.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT runtime)
endif()
install(FILES README.md LICENSE CHANGELOG.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
# As they stand beside each other here, so that their links hold.
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
        PATTERN "Doxyfile" EXCLUDE PATTERN "CMakeLists.txt" EXCLUDE)
if(WIN32)
  # What Microsoft's tools make an import library of: statements alone, in lines as these tools write them.
  file(STRINGS cmake/kv.def kv_names REGEX "^ +[A-Za-z_]")
  list(JOIN kv_names "\r\n" kv_names)
  file(WRITE ${PROJECT_BINARY_DIR}/kv.def "LIBRARY kv\r\nEXPORTS\r\n${kv_names}\r\n")
  install(FILES ${PROJECT_BINARY_DIR}/kv.def DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
endif()

# For Windows an archive, which brings everything; for other systems the same, where debian/ does not serve.
set(CPACK_PACKAGE_VENDOR "The kv developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "general-purpose utility library for engineering applications")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
else()
  set(CPACK_GENERATOR TGZ)
endif()
include(CPack)
