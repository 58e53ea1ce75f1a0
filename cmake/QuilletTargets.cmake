# What every target of this project has in common.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

# Compiles through ccache where it is installed.
function(quillet_use_ccache)
  find_program(QUILLET_CCACHE ccache)
  if(QUILLET_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${QUILLET_CCACHE}"
        PARENT_SCOPE)
  endif()
endfunction()

# quillet_configure_target(<target>)
#
# Language level, warnings, visibility and Qt's strict modes for one of our own targets.
function(quillet_configure_target target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(
    ${target}
    PROPERTIES CXX_STANDARD 17
               CXX_STANDARD_REQUIRED ON
               CXX_EXTENSIONS OFF
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON)

  target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS
                                               QT_STRICT_ITERATORS)

  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8 $<$<BOOL:${QUILLET_WARNINGS_AS_ERRORS}>:/WX>)
  else()
    target_compile_options(
      ${target}
      PRIVATE -Wall
              -Wextra
              -Wpedantic
              -Wshadow
              -Wconversion
              -Wold-style-cast
              # Floating-point results must not depend on whether the processor has a fused multiply-add.
              -ffp-contract=off
              $<$<BOOL:${QUILLET_WARNINGS_AS_ERRORS}>:-Werror>)
  endif()

  # g++ makes the statics of inline functions unique in the process, and the loader then never lets go
  # of the library that defined them first.
  check_cxx_compiler_flag(-fno-gnu-unique QUILLET_HAVE_NO_GNU_UNIQUE)
  if(QUILLET_HAVE_NO_GNU_UNIQUE)
    target_compile_options(${target} PRIVATE -fno-gnu-unique)
  endif()
endfunction()

# quillet_configure_library(<target> <version script>)
#
# A shared library of ours: versioned, without unresolved symbols, exporting only what its version
# script lists.
function(quillet_configure_library target version_script)
  quillet_configure_target(${target})
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})

  set(plain_script "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/plain.map")
  check_linker_flag(CXX "LINKER:--version-script=${plain_script}" QUILLET_HAVE_VERSION_SCRIPT)
  if(QUILLET_HAVE_VERSION_SCRIPT)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${version_script}")
    set_property(
      TARGET ${target}
      APPEND
      PROPERTY LINK_DEPENDS "${version_script}")
  endif()

  # A sanitizer's run-time library stands in the program, so its symbols stay open in a library.
  check_linker_flag(CXX "LINKER:-z,defs" QUILLET_HAVE_Z_DEFS)
  if(QUILLET_HAVE_Z_DEFS AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    target_link_options(${target} PRIVATE "LINKER:-z,defs")
  endif()
endfunction()

# quillet_install_library(<target> <directory of its headers>)
#
# Installs one of our libraries with its public headers, and exports it as <target>::<target>.
function(quillet_install_library target header_directory)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${target}::${target})
  get_target_property(type ${target} TYPE)
  if(NOT type STREQUAL "INTERFACE_LIBRARY")
    quillet_set_install_rpath(${target} "${CMAKE_INSTALL_LIBDIR}")
  endif()
  install(
    TARGETS ${target}
    EXPORT QuilletTargets
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    RUNTIME COMPONENT runtime
    ARCHIVE COMPONENT development
    PUBLIC_HEADER DESTINATION "${header_directory}" COMPONENT development
    INCLUDES
    DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
endfunction()

# quillet_set_install_rpath(<target> <directory that it is installed in>)
#
# Lets an installed file find our libraries wherever the whole installation is moved to. A project that has
# set CMAKE_INSTALL_RPATH keeps its own way.
function(quillet_set_install_rpath target directory)
  if(DEFINED CMAKE_INSTALL_RPATH)
    return()
  endif()
  set(origin "$ORIGIN")
  if(APPLE)
    set(origin "@loader_path")
  endif()
  file(RELATIVE_PATH path "${CMAKE_INSTALL_PREFIX}/${directory}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  if(path)
    set(origin "${origin}/${path}")
  endif()
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${origin}")
endfunction()
