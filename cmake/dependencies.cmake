# Third-party libraries: Debian's -dev packages natively, the cross-built static ones (tools/deps.sh) for Windows.
find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
if(QUENLOX_TESTS)
  find_package(GTest REQUIRED)
  include(GoogleTest)
endif()
