# Builds each of SOURCES by one call of COMPILER with the flags that PKG_CONFIG gives for PACKAGES, by itself
# Quillet, in PREFIX (with its libraries in LIBDIR), and runs the program. FLAGS are those of the library's own build.

cmake_minimum_required(VERSION 3.21)

include("${CMAKE_CURRENT_LIST_DIR}/PkgConfigFlags.cmake")
pkg_config_flags(flags --cflags --libs)

separate_arguments(build_flags NATIVE_COMMAND "${FLAGS}")
file(MAKE_DIRECTORY "${DIRECTORY}")
foreach(source IN LISTS SOURCES)
  cmake_path(GET source STEM name)
  execute_process(COMMAND "${COMPILER}" ${build_flags} "${source}" -o "${DIRECTORY}/${name}" ${flags}
                          "-Wl,-rpath,${PREFIX}/${LIBDIR}"
                          COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND "${DIRECTORY}/${name}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
