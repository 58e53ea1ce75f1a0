# Installs what is built in BUILD_DIRECTORY (of CONFIGURATION, with its libraries in LIBDIR and, if TOOLS is
# true, with quillet-svg) component by component, compares what comes with the lists in installed-files/, and
# moves the whole to PREFIX. All that uses the installation afterwards shows by the way that it can be moved.

cmake_minimum_required(VERSION 3.21)

set(first_prefix "${PREFIX}-before-the-move")
file(REMOVE_RECURSE "${first_prefix}" "${PREFIX}")

# install_files(<result> [<component>])
#
# Installs one component, or everything, and lists in <result> what is new.
function(install_files result)
  file(
    GLOB_RECURSE before
    RELATIVE "${first_prefix}"
    "${first_prefix}/*")
  set(component "")
  if(ARGN)
    set(component --component ${ARGN})
  endif()
  execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIRECTORY}" --config "${CONFIGURATION}"
                          --prefix "${first_prefix}" ${component} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(
    GLOB_RECURSE after
    RELATIVE "${first_prefix}"
    "${first_prefix}/*")
  list(REMOVE_ITEM after ${before})
  set(${result}
      "${after}"
      PARENT_SCOPE)
endfunction()

function(compare component installed expected)
  foreach(file IN LISTS installed)
    if(NOT file IN_LIST expected)
      message(SEND_ERROR "${component} installs a file that is not listed: ${file}")
    endif()
  endforeach()
  foreach(file IN LISTS expected)
    if(NOT file IN_LIST installed)
      message(SEND_ERROR "${component} does not install ${file}")
    endif()
  endforeach()
endfunction()

string(TOLOWER "${CONFIGURATION}" CONFIGURATION_NAME)
if(NOT CONFIGURATION_NAME)
  set(CONFIGURATION_NAME noconfig)
endif()

foreach(component IN LISTS COMPONENTS)
  install_files(installed ${component})
  file(READ "${CMAKE_CURRENT_LIST_DIR}/installed-files/${component}.txt" expected)
  string(CONFIGURE "${expected}" expected @ONLY)
  string(REGEX REPLACE "\n$" "" expected "${expected}")
  string(REPLACE "\n" ";" expected "${expected}")
  if(NOT TOOLS)
    list(FILTER expected EXCLUDE REGEX "/quillet-svg")
  endif()
  compare(${component} "${installed}" "${expected}")
endforeach()

# The guides and pictures are listed nowhere: all that there are belong to the documentation.
install_files(installed documentation)
list(FILTER installed EXCLUDE REGEX "/docs/html/")
file(
  GLOB_RECURSE expected
  RELATIVE "${SOURCE_DIRECTORY}"
  "${SOURCE_DIRECTORY}/docs/*.md"
  "${SOURCE_DIRECTORY}/docs/pictures/*")
list(REMOVE_ITEM expected docs/reference.md)
list(TRANSFORM expected PREPEND "share/doc/Quillet/")
list(APPEND expected share/doc/Quillet/README.md share/doc/Quillet/CHANGELOG.md)
compare(documentation "${installed}" "${expected}")

install_files(installed)
compare("an installation of everything" "${installed}" "")

file(RENAME "${first_prefix}" "${PREFIX}")

# Nothing that is read as text leads back to where it was built or first installed.
file(GLOB_RECURSE texts "${PREFIX}/*.cmake" "${PREFIX}/*.pc" "${PREFIX}/*.desktop")
foreach(text IN LISTS texts)
  file(READ "${text}" content)
  foreach(directory IN ITEMS "${SOURCE_DIRECTORY}" "${BUILD_DIRECTORY}" "${first_prefix}")
    string(FIND "${content}" "${directory}" position)
    if(NOT position EQUAL -1)
      message(SEND_ERROR "${text} names ${directory}")
    endif()
  endforeach()
endforeach()
