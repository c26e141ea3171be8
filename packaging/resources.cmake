# quenlox_resources(<target>): icon, version and manifest of the program, for every target that opens windows.
function(quenlox_resources target)
  set(rc ${PROJECT_BINARY_DIR}/packaging/quenlox.rc)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/quenlox.rc.in ${rc} @ONLY)
  target_sources(${target} PRIVATE ${rc})
  set_source_files_properties(${rc} TARGET_DIRECTORY ${target} PROPERTIES OBJECT_DEPENDS
    "${PROJECT_SOURCE_DIR}/packaging/quenlox.exe.manifest;${PROJECT_SOURCE_DIR}/packaging/icon/quenlox.ico")
endfunction()
