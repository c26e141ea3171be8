# A room is a folder with one library `quenlox_<room>`, and names the rooms whose headers it includes:
# quenlox_room(<room> [SOURCES ...] [USES <other rooms>] [PRECOMPILED <headers>]). One without sources has headers only.
function(quenlox_room room)
  cmake_parse_arguments(ARG "" "PRECOMPILED" "SOURCES;USES" ${ARGN})
  set(scope INTERFACE)
  if(ARG_SOURCES)
    set(scope PUBLIC)
    add_library(quenlox_${room} STATIC ${ARG_SOURCES})
    if(NOT ARG_PRECOMPILED)
      set(ARG_PRECOMPILED standard)
    endif()
    quenlox_precompiled(quenlox_${room} ${ARG_PRECOMPILED})
  else()
    add_library(quenlox_${room} INTERFACE)
  endif()
  target_link_libraries(quenlox_${room} ${scope} quenlox_compile_options)
  foreach(other ${ARG_USES})
    # A room of the libraries is known by its C header alone and is loaded at run time.
    if(NOT other IN_LIST QUENLOX_LIBRARIES)
      target_link_libraries(quenlox_${room} ${scope} quenlox_${other})
    endif()
  endforeach()
  quenlox_note_room(${room} ${ARG_USES})
endfunction()

quenlox_precompile(standard HEADERS ${QUENLOX_STANDARD_HEADERS})

# Writes down for the check of the includes which folder is which room, and what it uses.
function(quenlox_note_room room)
  file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  list(JOIN ARGN " " uses)
  set_property(GLOBAL APPEND PROPERTY QUENLOX_ROOMS "${folder}: ${room} ${uses}\n")
endfunction()

# A test that fails when a file includes a room that its own does not name, or a folder with sources is no room.
function(quenlox_check_includes)
  get_property(rooms GLOBAL PROPERTY QUENLOX_ROOMS)
  list(JOIN rooms "" text)
  file(WRITE ${PROJECT_BINARY_DIR}/rooms.txt "${text}")
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
  add_test(NAME rooms.includes
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/check_includes.py ${PROJECT_BINARY_DIR}/rooms.txt)
  add_test(NAME docs.places COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/check_docs.py)
  add_test(NAME docs.rooms
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/draw_rooms.py ${PROJECT_BINARY_DIR}/rooms.txt --check)
  add_test(NAME docs.formats COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/media_formats.py --check)
endfunction()


# Builds the unit tests that this build runs, and nothing else.
add_custom_target(unit_tests)
# What is tested is optimised and checked for undefined behaviour, the tests are neither: their macros are what a build
# from nothing spends its time on.
set(options)
if(QUENLOX_SANITIZE)
  set(options -O0 -fno-sanitize=undefined)
endif()
if(QUENLOX_TESTS AND NOT WIN32)
  quenlox_precompile(tests HEADERS <gmock/gmock.h> <gtest/gtest.h> ${QUENLOX_STANDARD_HEADERS}
    LIBRARIES GTest::gmock OPTIONS -fPIE ${options})
endif()
set_property(GLOBAL PROPERTY QUENLOX_TEST_OPTIONS ${options})

# The tests of one room: quenlox_test(<name> SOURCES ... LIBRARIES ... [ALSO_WINDOWS | ONLY_WINDOWS] [THREADS]) makes an
# executable test_<name>. Portable tests run natively; those that carry platform/win32 or depend on Windows say so and
# run under Wine. THREADS marks those that ThreadSanitizer has something to find in.
function(quenlox_test name)
  cmake_parse_arguments(ARG "ALSO_WINDOWS;ONLY_WINDOWS;THREADS" "" "SOURCES;LIBRARIES" ${ARGN})
  if(ARG_ONLY_WINDOWS AND NOT WIN32)
    return()
  endif()
  add_executable(test_${name} ${ARG_SOURCES})
  target_link_libraries(test_${name} PRIVATE quenlox_compile_options ${ARG_LIBRARIES} GTest::gmock GTest::gtest_main)
  get_property(options GLOBAL PROPERTY QUENLOX_TEST_OPTIONS)
  target_compile_options(test_${name} PRIVATE ${options})
  if(NOT WIN32)
    quenlox_precompiled(test_${name} tests)
  endif()
  set(wanted ON)
  if(CMAKE_CROSSCOMPILING AND NOT ARG_ALSO_WINDOWS AND NOT ARG_ONLY_WINDOWS)
    set(wanted OFF)
  elseif(QUENLOX_SANITIZE STREQUAL thread AND NOT ARG_THREADS)
    set(wanted OFF)
  endif()
  if(wanted)
    add_dependencies(unit_tests test_${name})
    # Windows that take the keyboard from each other cannot be tested side by side on one desktop.
    set(desktop)
    if(ARG_ONLY_WINDOWS)
      set(desktop RESOURCE_LOCK desktop)
    endif()
    gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST PROPERTIES ${desktop} TIMEOUT 120 LABELS unit)
  else()
    set_target_properties(test_${name} PROPERTIES EXCLUDE_FROM_ALL ON)
  endif()
endfunction()
