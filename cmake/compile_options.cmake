# Options that every target of the project takes; third-party sources are compiled without them.
add_library(quenlox_compile_options INTERFACE)
target_include_directories(quenlox_compile_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(quenlox_compile_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Wshadow)
# When it optimises, GCC 12 to 14 warn of overlapping, endless and misplaced copies in their own std::string and of values
# of their own std::optional. Builds that do not optimise keep these warnings.
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_BUILD_TYPE STREQUAL Release)
  target_compile_options(quenlox_compile_options INTERFACE "$<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict;-Wno-stringop-overflow;-Wno-stringop-overread;-Wno-array-bounds;-Wno-maybe-uninitialized>")
endif()
if(QUENLOX_SANITIZE)
  add_compile_options(-fsanitize=${QUENLOX_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUENLOX_SANITIZE})
  if(QUENLOX_SANITIZE MATCHES undefined)
    # No class here is cast down, and looking after it is a fifth of the time that a build from nothing takes.
    add_compile_options(-fno-sanitize-recover=undefined -fno-sanitize=vptr)
  endif()
endif()
if(QUENLOX_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(WIN32)
  add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0A00 STRICT)
  # The same sources give the same bytes, wherever and whenever they are built: no path of this checkout (which ccache gives
  # relatively) and no time; what strips symbols later writes the time of SOURCE_DATE_EPOCH, that of the commit.
  add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=../..=.)
  add_link_options(-Wl,--no-insert-timestamp)
  # A buffer that overflows ends the program before anything of the overflow is used. Line tables, which stay out of what
  # users get, turn the addresses of a crash note into lines (tools/explain_crash.py).
  add_compile_options("$<$<COMPILE_LANGUAGE:C,CXX>:-fstack-protector-strong;-g1>")
  add_compile_options("$<$<AND:$<COMPILE_LANGUAGE:C,CXX>,$<CONFIG:Release>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  add_link_options(-fstack-protector-strong)
  # Windows 10 is the first to start it. Which build of it is the oldest stands in packaging/installer/quenlox.nsi.
  add_link_options(-Wl,--major-subsystem-version=10,--minor-subsystem-version=0,--major-os-version=10,--minor-os-version=0)
  add_link_options(-static -Wl,--nxcompat -Wl,--dynamicbase -Wl,--high-entropy-va)
endif()
