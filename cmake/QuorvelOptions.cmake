# Which parts of Quorvel a build includes: everything when built on its own, the libraries only
# when another project includes it with add_subdirectory or FetchContent.
option(QUORVEL_BUILD_CLI "Build the quorvel command and its demonstration" ${PROJECT_IS_TOP_LEVEL})
option(QUORVEL_BUILD_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(QUORVEL_BUILD_BENCH "Build the benchmarks" ${PROJECT_IS_TOP_LEVEL})
option(QUORVEL_BUILD_PYTHON "Build the Python extension module (python/)" ${PROJECT_IS_TOP_LEVEL})

if(QUORVEL_BUILD_TESTS)
  enable_testing()
endif()

# The C interface (capi) builds libquorvel.so and is always part of the build.
set(QUORVEL_PARTS capi)
if(QUORVEL_BUILD_CLI)
  list(APPEND QUORVEL_PARTS demo batch cli)
endif()
if(QUORVEL_BUILD_BENCH)
  list(APPEND QUORVEL_PARTS bench)
endif()
if(QUORVEL_BUILD_PYTHON)
  list(APPEND QUORVEL_PARTS python)
endif()
if(QUORVEL_BUILD_TESTS)
  list(APPEND QUORVEL_PARTS tests fuzz)
endif()
