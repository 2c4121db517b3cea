# SPDX-License-Identifier: MIT
# kv_version_resource(target name type description): on Windows, the target tells its version to the system.
if(WIN32)
  enable_language(RC)
endif()
set(KV_VERSION_RESOURCE ${CMAKE_CURRENT_LIST_DIR}/version.rc.in)

function(kv_version_resource target name file_type description)
  if(NOT WIN32)
    return()
  endif()
  configure_file(${KV_VERSION_RESOURCE} ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
endfunction()
