# SPDX-License-Identifier: MIT
# kv_export_only(target def_file): the shared library `target` exports the names that the module
# definition file lists, and no others. The same file serves the Windows linker as it is; for ELF it
# becomes a version script.
function(kv_export_only target def_file)
  if(WIN32)
    target_sources(${target} PRIVATE ${def_file})
    return()
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${def_file})
  file(STRINGS ${def_file} names REGEX "^ +[A-Za-z_]")
  list(TRANSFORM names STRIP)
  list(JOIN names ";\n    " names)
  set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.map)
  file(CONFIGURE OUTPUT ${script} CONTENT "{\n  global:\n    @names@;\n  local:\n    *;\n};\n" @ONLY)
  target_link_options(${target} PRIVATE -Wl,--version-script=${script} -Wl,--no-undefined-version)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
endfunction()
