# With CMAKE_UNITY_BUILD, which halves the time of a build and more, the sources of a folder are compiled as one.
set_target_properties(kv_objects PROPERTIES UNITY_BUILD_MODE GROUP)
# What shares a name in its unnamed namespace with another source of its folder is compiled by itself.
set(alone config/mini_edit.cpp config/search.cpp env/name_table.cpp fio/open.cpp fio/temporary_names.cpp
    platform/posix/serial_settings.cpp platform/text_stream.cpp platform/text_window.cpp profiles/pattern.cpp)
get_target_property(sources kv_objects SOURCES)
foreach(source ${sources})
  cmake_path(RELATIVE_PATH source BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE name)
  get_filename_component(folder ${name} DIRECTORY)
  string(MAKE_C_IDENTIFIER ${folder} group)
  set_source_files_properties(${source} TARGET_DIRECTORY kv_objects PROPERTIES UNITY_GROUP ${group})
  if(name IN_LIST alone)
    set_source_files_properties(${source} TARGET_DIRECTORY kv_objects PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endif()
endforeach()
if(CMAKE_UNITY_BUILD)
  # The types of a source, which is included then, are taken for those of a header.
  target_compile_options(kv_objects PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()
# The sources of what comes behind it share more names.
set(CMAKE_UNITY_BUILD OFF)
