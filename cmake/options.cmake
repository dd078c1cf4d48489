# What can be chosen when the project is configured. The presets for developers (CMakePresets.json)
# turn on the tests and OLMKIT_WERROR.

# The module is always built. It needs the C++ standard library only.
option(OLMKIT_BUILD_HOST "Build libolmhost, the library that runs the module on archives" ON)
option(OLMKIT_BUILD_CLI "Build the program olmkit" ${OLMKIT_BUILD_HOST})

option(OLMKIT_BUILD_TESTS "Build the tests" OFF)
option(OLMKIT_BUILD_BENCH "Build the floor program of bench/" OFF)
option(OLMKIT_WERROR "Treat warnings as errors" OFF)
set(OLMKIT_SANITIZE "" CACHE STRING
  "Sanitizers to build everything with, as g++ takes them: address,undefined or thread")

if(OLMKIT_BUILD_CLI AND NOT OLMKIT_BUILD_HOST)
  message(FATAL_ERROR "OLMKIT_BUILD_CLI requires OLMKIT_BUILD_HOST")
endif()
if(OLMKIT_BUILD_TESTS AND NOT OLMKIT_BUILD_CLI)
  message(FATAL_ERROR "OLMKIT_BUILD_TESTS requires OLMKIT_BUILD_CLI: tests run the program")
endif()
