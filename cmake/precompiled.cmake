# The standard library's headers that most files read, and those of Windows and of the tests, compiled once for each build:
# reading them again for every file is a third of the time of a build from nothing. A build without them (the presets
# bench, tsan and fuzz) shows what a file forgot to include.
option(QUENLOX_PRECOMPILE "Compile the common headers of libraries once" OFF)

set(QUENLOX_STANDARD_HEADERS
  <algorithm> <array> <atomic> <chrono> <cmath> <condition_variable> <cstdint> <cstdlib> <cstring> <functional> <map> <memory>
  <mutex> <optional> <span> <string> <string_view> <thread> <utility> <vector>)

# quenlox_precompile(<name> HEADERS ... [LIBRARIES ...] [OPTIONS ...]) : what quenlox_precompiled(<target> <name>) shares.
function(quenlox_precompile name)
  cmake_parse_arguments(ARG "" "" "HEADERS;LIBRARIES;OPTIONS" ${ARGN})
  if(QUENLOX_PRECOMPILE)
    set(nothing ${PROJECT_BINARY_DIR}/precompiled_${name}.cpp)
    file(CONFIGURE OUTPUT ${nothing} CONTENT "")
    add_library(precompiled_${name} OBJECT ${nothing})
    target_link_libraries(precompiled_${name} PRIVATE quenlox_compile_options ${ARG_LIBRARIES})
    target_compile_options(precompiled_${name} PRIVATE ${ARG_OPTIONS})
    target_precompile_headers(precompiled_${name} PRIVATE ${ARG_HEADERS})
  endif()
endfunction()

function(quenlox_precompiled target name)
  if(QUENLOX_PRECOMPILE)
    target_precompile_headers(${target} REUSE_FROM precompiled_${name})
  endif()
endfunction()

# The compiler must read what it compiled from the file itself for ccache to know it again.
if(QUENLOX_PRECOMPILE AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
endif()
