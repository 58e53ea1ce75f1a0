# Projects and programs outside of this one that use the library: built inside them, or installed.

set(prefix "${CMAKE_CURRENT_BINARY_DIR}/installed")
set(host_prefix "${CMAKE_CURRENT_BINARY_DIR}/installed-with-host-targets")
set(consumer_environment "QT_QPA_PLATFORM=offscreen" ${sanitizer_environment})

# quillet_add_consumer(<name> <project> <option>...)
#
# Configures, builds and tests the project in the directory <project>, with the compiler and the flags of this
# build.
function(quillet_add_consumer name project)
  add_test(
    NAME ${name}
    COMMAND
      "${CMAKE_CTEST_COMMAND}" --build-and-test "${CMAKE_CURRENT_SOURCE_DIR}/${project}"
      "${CMAKE_CURRENT_BINARY_DIR}/${name}" --build-generator "${CMAKE_GENERATOR}" --build-noclean
      --build-options ${ARGN} "-DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}"
      "-DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}" "-DCMAKE_CXX_FLAGS=${CMAKE_CXX_FLAGS}"
      "-DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}" --test-command "${CMAKE_CTEST_COMMAND}" --output-on-failure)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600 ENVIRONMENT "${consumer_environment}")
endfunction()

# Quillet inside another project, once with its own stand-ins and once with the host's targets.
foreach(host_targets OFF ON)
  if(host_targets) # one of the two builds the test kit, the other has to do without
    set(test_kit OFF)
  else()
    set(test_kit ON)
  endif()
  quillet_add_consumer(
    embedded-with-host-targets-${host_targets} consumer "-DQUILLET_SOURCE_DIR=${PROJECT_SOURCE_DIR}"
    "-DHOST_TARGETS=${host_targets}" -DQUILLET_INSTALL=${host_targets} -DQUILLET_BUILD_TEST_KIT=${test_kit})
endforeach()

if(NOT QUILLET_INSTALL OR NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
  return() # the lists of installed files name them as they are called there
endif()

set(components runtime development)
if(QUILLET_BUILD_EXAMPLES)
  list(APPEND components gallery)
endif()
add_test(
  NAME install
  COMMAND
    "${CMAKE_COMMAND}" -D "BUILD_DIRECTORY=${PROJECT_BINARY_DIR}" -D "SOURCE_DIRECTORY=${PROJECT_SOURCE_DIR}"
    -D "CONFIGURATION=$<CONFIG>" -D "LIBDIR=${CMAKE_INSTALL_LIBDIR}" -D "PREFIX=${prefix}" -D
    "COMPONENTS=${components}" -D "TOOLS=${QUILLET_BUILD_TOOLS}" -P "${CMAKE_CURRENT_SOURCE_DIR}/install.cmake")
set_tests_properties(install PROPERTIES FIXTURES_SETUP installation)

quillet_add_consumer(installed consumer "-DCMAKE_PREFIX_PATH=${prefix}")
quillet_add_consumer(each-installed-header-compiles-alone each-header "-DCMAKE_PREFIX_PATH=${prefix}")
set_tests_properties(installed each-installed-header-compiles-alone PROPERTIES FIXTURES_REQUIRED installation)

# The test kit in the tests of applications.
foreach(framework IN ITEMS qtest gtest)
  quillet_add_consumer(test-with-${framework} ../examples/test-with-${framework} "-DCMAKE_PREFIX_PATH=${prefix}")
  set_tests_properties(test-with-${framework} PROPERTIES FIXTURES_REQUIRED installation)
endforeach()

if(QUILLET_BUILD_EXAMPLES)
  add_test(NAME installed-gallery COMMAND "${prefix}/${CMAKE_INSTALL_BINDIR}/quillet-gallery" --version)
  set_tests_properties(
    installed-gallery PROPERTIES FIXTURES_REQUIRED installation ENVIRONMENT "${consumer_environment}"
                                 PASS_REGULAR_EXPRESSION "quillet-gallery ${PROJECT_VERSION}")
endif()

if(QUILLET_BUILD_TOOLS)
  add_test(NAME installed-quillet-svg COMMAND "${prefix}/${CMAKE_INSTALL_BINDIR}/quillet-svg" --version)
  set_tests_properties(
    installed-quillet-svg PROPERTIES FIXTURES_REQUIRED installation ENVIRONMENT "${consumer_environment}"
                                     PASS_REGULAR_EXPRESSION "quillet-svg ${PROJECT_VERSION}")
endif()

# What the project with host targets has built, installed, and used by that project once more.
set_tests_properties(embedded-with-host-targets-ON PROPERTIES FIXTURES_SETUP build-with-host-targets)
add_test(NAME install-with-host-targets
         COMMAND "${CMAKE_COMMAND}" --install "${CMAKE_CURRENT_BINARY_DIR}/embedded-with-host-targets-ON"
                 --config "$<CONFIG>" --prefix "${host_prefix}")
set_tests_properties(install-with-host-targets PROPERTIES FIXTURES_REQUIRED build-with-host-targets
                                                          FIXTURES_SETUP installation-with-host-targets)
quillet_add_consumer(installed-with-host-targets consumer "-DCMAKE_PREFIX_PATH=${host_prefix}"
                     -DHOST_TARGETS=ON)
set_tests_properties(installed-with-host-targets PROPERTIES FIXTURES_REQUIRED installation-with-host-targets)

find_program(QUILLET_PKG_CONFIG pkg-config)
if(NOT QUILLET_PKG_CONFIG)
  message(STATUS "No pkg-config: what goes by its flags is not tested")
  return()
endif()
set(installation_for_scripts -D "COMPILER=${CMAKE_CXX_COMPILER}" -D "PKG_CONFIG=${QUILLET_PKG_CONFIG}" -D
                             "PREFIX=${prefix}" -D "LIBDIR=${CMAKE_INSTALL_LIBDIR}")
add_test(
  NAME built-with-pkg-config
  COMMAND
    "${CMAKE_COMMAND}" ${installation_for_scripts} -D "FLAGS=${CMAKE_CXX_FLAGS}" -D
    "DIRECTORY=${CMAKE_CURRENT_BINARY_DIR}/built-with-pkg-config" -D
    "SOURCES=${CMAKE_CURRENT_SOURCE_DIR}/consumer/main.cpp;${CMAKE_CURRENT_SOURCE_DIR}/consumer/logging.cpp"
    -P "${CMAKE_CURRENT_SOURCE_DIR}/build-with-pkg-config.cmake")
add_test(
  NAME test-built-with-pkg-config
  COMMAND
    "${CMAKE_COMMAND}" ${installation_for_scripts} -D "FLAGS=${CMAKE_CXX_FLAGS}" -D
    "DIRECTORY=${CMAKE_CURRENT_BINARY_DIR}/test-built-with-pkg-config" -D "PACKAGES=Quillet-Testing;gtest" -D
    "SOURCES=${PROJECT_SOURCE_DIR}/examples/test-with-gtest/main.cpp" -P
    "${CMAKE_CURRENT_SOURCE_DIR}/build-with-pkg-config.cmake")
add_test(
  NAME must-not-compile
  COMMAND
    "${CMAKE_COMMAND}" ${installation_for_scripts} -D
    "DIRECTORY=${CMAKE_CURRENT_SOURCE_DIR}/must-not-compile" -P
    "${CMAKE_CURRENT_SOURCE_DIR}/must-not-compile.cmake")
set_tests_properties(built-with-pkg-config test-built-with-pkg-config must-not-compile
                     PROPERTIES FIXTURES_REQUIRED installation ENVIRONMENT "${consumer_environment}")
