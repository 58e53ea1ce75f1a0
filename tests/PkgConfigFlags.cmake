# pkg_config_flags(<result> <option>...)
#
# What PKG_CONFIG prints about PACKAGES, Quillet unless it is set, for the Quillet installed in PREFIX with its
# libraries in LIBDIR, and what a program with Qt needs besides.
function(pkg_config_flags result)
  set(ENV{PKG_CONFIG_PATH} "${PREFIX}/${LIBDIR}/pkgconfig")
  if(NOT PACKAGES)
    set(PACKAGES Quillet)
  endif()
  execute_process(
    COMMAND "${PKG_CONFIG}" ${ARGN} ${PACKAGES}
    OUTPUT_VARIABLE flags
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags NATIVE_COMMAND "-std=c++17 -fPIC ${flags}") # Qt asks for the latter
  set(${result}
      "${flags}"
      PARENT_SCOPE)
endfunction()
