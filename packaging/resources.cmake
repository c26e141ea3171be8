# What Windows reads in the program files: icon, manifest and version. The version has one source, cmake/version.cmake; the
# installer and the names of the packages take it from there too.

# quenlox_version_for(<source>...): defines the texts QUENLOX_VERSION, QUENLOX_VERSION_NUMBERS ("1.1.0") and QUENLOX_COMMIT in
# these sources of this folder
function(quenlox_version_for)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_DEFINITIONS
    "QUENLOX_VERSION=\"${QUENLOX_VERSION}\";QUENLOX_VERSION_NUMBERS=\"${PROJECT_VERSION}\";QUENLOX_COMMIT=\"${QUENLOX_COMMIT}\"")
endfunction()

function(quenlox_version_resource target internal_name file_name file_type description pictures)
  set(rc ${PROJECT_BINARY_DIR}/packaging/${target}.rc)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/version.rc.in ${rc} @ONLY)
  target_sources(${target} PRIVATE ${rc})
endfunction()

# quenlox_resources(<target>): icon, version and manifest of the program, for every target that opens windows.
function(quenlox_resources target)
  set(manifest ${PROJECT_BINARY_DIR}/packaging/quenlox.exe.manifest)
  set(icon ${PROJECT_SOURCE_DIR}/packaging/icon/quenlox.ico)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/quenlox.exe.manifest.in ${manifest} @ONLY)
  quenlox_version_resource(${target} Quenlox Quenlox.exe VFT_APP Quenlox
    "CREATEPROCESS_MANIFEST_RESOURCE_ID RT_MANIFEST \"${manifest}\"\n1 ICON \"${icon}\"")
  set_source_files_properties(${PROJECT_BINARY_DIR}/packaging/${target}.rc TARGET_DIRECTORY ${target}
    PROPERTIES OBJECT_DEPENDS "${manifest};${icon}")
endfunction()

# quenlox_library_resources(<target> <description>): the version of a DLL
function(quenlox_library_resources target description)
  quenlox_version_resource(${target} ${target} ${target}.dll VFT_DLL ${description} "")
endfunction()
