# Third-party libraries under one set of names, deps::<library>, wherever they come from: Debian's -dev packages natively
# (MSYS2's on Windows), the static ones that tools/deps.sh builds when cross-compiling for Windows.
find_package(Threads REQUIRED)

if(CMAKE_CROSSCOMPILING AND WIN32)
  set(deps_scripts tools/deps.sh tools/deps/archive.sh tools/deps/common.sh tools/deps/licences.sh tools/deps/source.sh)
  list(TRANSFORM deps_scripts PREPEND ${PROJECT_SOURCE_DIR}/)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${deps_scripts})
  execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/deps.sh OUTPUT_VARIABLE QUENLOX_DEPS
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(QUENLOX_TESTS)
    execute_process(COMMAND ${PROJECT_SOURCE_DIR}/tools/deps.sh tests OUTPUT_VARIABLE QUENLOX_TEST_DEPS
                    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    list(PREPEND CMAKE_PREFIX_PATH ${QUENLOX_TEST_DEPS})
  endif()
  set(deps_search PATHS ${QUENLOX_DEPS} NO_DEFAULT_PATH)
  list(PREPEND CMAKE_PREFIX_PATH ${QUENLOX_DEPS})
endif()

# quenlox_dependency(<name> <library file name> <header> <folder of headers>...)
# The folders, relative to where <header> is found, are what consumers get on their include path.
function(quenlox_dependency name library header)
  # The prefix changes its name with its contents, so what an earlier configuration found there is not kept.
  if(DEFINED QUENLOX_DEPS)
    unset(deps_${name}_library CACHE)
    unset(deps_${name}_include CACHE)
  endif()
  find_library(deps_${name}_library ${library} ${deps_search} PATH_SUFFIXES lib REQUIRED)
  find_path(deps_${name}_include ${header} ${deps_search} PATH_SUFFIXES include REQUIRED)
  mark_as_advanced(deps_${name}_library deps_${name}_include)
  add_library(deps::${name} UNKNOWN IMPORTED GLOBAL)
  list(TRANSFORM ARGN PREPEND ${deps_${name}_include}/)
  set_target_properties(deps::${name} PROPERTIES
    IMPORTED_LOCATION ${deps_${name}_library} INTERFACE_INCLUDE_DIRECTORIES "${deps_${name}_include};${ARGN}")
endfunction()

quenlox_dependency(mpg123 mpg123 mpg123.h)
quenlox_dependency(mp3lame mp3lame lame/lame.h)
quenlox_dependency(soundtouch SoundTouch soundtouch/SoundTouch.h soundtouch)
quenlox_dependency(kissfft kissfft-float kissfft/kiss_fft.h kissfft)
if(WIN32)
  set_property(TARGET deps::mpg123 PROPERTY INTERFACE_LINK_LIBRARIES shlwapi)
endif()
# No part of the product: a reader of tags, which reads in the tests what ours writes, and which ours is measured against.
if(QUENLOX_BENCH OR (QUENLOX_TESTS AND NOT WIN32))
  quenlox_dependency(taglib tag taglib/tag.h taglib)
endif()

if(QUENLOX_TESTS)
  if(DEFINED QUENLOX_DEPS)
    unset(GTest_DIR CACHE)
  endif()
  find_package(GTest REQUIRED CONFIG)
  include(GoogleTest)
endif()
