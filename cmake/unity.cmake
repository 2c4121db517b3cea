# SPDX-License-Identifier: MIT
# kv_unity(TARGET [ALONE SOURCE...]): with CMAKE_UNITY_BUILD, which halves the time of a build and more, the sources of
# a folder are compiled as one. Those behind ALONE, which share a name in their unnamed namespace with another
# source of their folder, are compiled by themselves.
function(kv_unity target)
  cmake_parse_arguments(PARSE_ARGV 1 unity "" "" ALONE)
  get_target_property(sources ${target} SOURCES)
  get_target_property(directory ${target} SOURCE_DIR)
  foreach(source ${sources})
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY ${directory} OUTPUT_VARIABLE file)
    cmake_path(RELATIVE_PATH file BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE name)
    get_filename_component(folder ${name} DIRECTORY)
    string(MAKE_C_IDENTIFIER ${folder} group)
    set_source_files_properties(${source} TARGET_DIRECTORY ${target} PROPERTIES UNITY_GROUP ${group})
    if(name IN_LIST unity_ALONE)
      set_source_files_properties(${source} TARGET_DIRECTORY ${target} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD_MODE GROUP)
  if(CMAKE_UNITY_BUILD)
    # The types of a source, which is included then, are taken for those of a header.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  endif()
endfunction()
