# Compiles each file in DIRECTORY twice with COMPILER, against the Quillet in PREFIX (with its libraries in
# LIBDIR; flags from PKG_CONFIG). As it stands it must compile. With MUST_NOT_COMPILE defined it must not, and
# the compiler must complain as the file's line "// error: <regular expression>" says.

cmake_minimum_required(VERSION 3.21)

include("${CMAKE_CURRENT_LIST_DIR}/PkgConfigFlags.cmake")
pkg_config_flags(flags --cflags)

function(try_to_compile file)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -E env LC_ALL=C "${COMPILER}" -fsyntax-only ${flags} ${ARGN} "${file}"
    RESULT_VARIABLE result
    ERROR_VARIABLE diagnostics)
  set(compiles FALSE)
  if(result EQUAL 0)
    set(compiles TRUE)
  endif()
  set(compiles
      ${compiles}
      PARENT_SCOPE)
  set(diagnostics
      "${diagnostics}"
      PARENT_SCOPE)
endfunction()

file(GLOB files "${DIRECTORY}/*.cpp")
if(NOT files)
  message(FATAL_ERROR "nothing to compile in ${DIRECTORY}")
endif()
foreach(file IN LISTS files)
  cmake_path(GET file STEM name)
  file(STRINGS "${file}" expected REGEX "^// error: ")
  string(REGEX REPLACE "^// error: " "" expected "${expected}")
  if(NOT expected)
    message(SEND_ERROR "${name}: no line says which error is expected")
    continue()
  endif()

  try_to_compile("${file}")
  if(NOT compiles)
    message(SEND_ERROR "${name} does not compile as it stands:\n${diagnostics}")
    continue()
  endif()

  try_to_compile("${file}" -DMUST_NOT_COMPILE)
  if(compiles)
    message(SEND_ERROR "${name} compiles, but must not")
  elseif(NOT diagnostics MATCHES "error: [^\n]*(${expected})")
    message(SEND_ERROR "${name} fails, but not with \"${expected}\":\n${diagnostics}")
  else()
    message(STATUS "${name}: refused")
  endif()
endforeach()
