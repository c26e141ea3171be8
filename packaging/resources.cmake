# What Windows reads in the program files: icon, manifest and version. The version number has one source, project() in the
# CMakeLists.txt above; the installer and the name of the zip take it from there too.

# quenlox_version_for(<source>...): defines QUENLOX_VERSION, the version as a text, in these sources of this folder
function(quenlox_version_for)
  set_source_files_properties(${ARGN} PROPERTIES COMPILE_DEFINITIONS QUENLOX_VERSION="${PROJECT_VERSION}")
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
