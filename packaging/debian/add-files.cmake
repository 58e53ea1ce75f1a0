# Run by CPack between the installation and the packing of the Debian packages. Adds what such packages have
# besides: copyright, changelog, overrides of lintian's remarks, compressed manual pages, and for the shared
# libraries the control files shlibs, symbols and triggers. Finds out what the packages depend on.
#
# CPack could find that out by itself and write shlibs, but then it also writes maintainer scripts that call
# ldconfig, where Debian has a trigger.

cmake_minimum_required(VERSION 3.21)

set(top "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
set(work "${CPACK_TOPLEVEL_DIRECTORY}/control")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}/debian") # dpkg's tools read debian/control of the directory they run in
file(WRITE "${work}/debian/control"
     "Source: quillet\n\nPackage: ${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME}\nArchitecture: any\n")
set(version "${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}")

# compress(<file>): in the way that gives the same bytes each time.
function(compress file)
  execute_process(COMMAND gzip --best --no-name --force "${file}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER "${component}" COMPONENT)
  set(package "${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME}")
  set(documents "${top}/${component}/usr/share/doc/${package}")
  file(COPY "${CMAKE_CURRENT_LIST_DIR}/copyright" DESTINATION "${documents}")
  configure_file("${CMAKE_CURRENT_LIST_DIR}/changelog" "${documents}/changelog.Debian" COPYONLY)
  compress("${documents}/changelog.Debian")
  set(overrides "${CMAKE_CURRENT_LIST_DIR}/${component}.lintian-overrides")
  if(EXISTS "${overrides}")
    configure_file("${overrides}" "${top}/${component}/usr/share/lintian/overrides/${package}" COPYONLY)
  endif()
  if(EXISTS "${documents}/CHANGELOG.md")
    file(RENAME "${documents}/CHANGELOG.md" "${documents}/changelog")
    compress("${documents}/changelog")
  endif()
  file(GLOB manual_pages "${top}/${component}/usr/share/man/man*/*.[0-9]")
  foreach(page IN LISTS manual_pages)
    compress("${page}")
  endforeach()
endforeach()

# The control files of the shared libraries. Each symbol is said to have come with this version: that is
# stricter than need be for older ones, and never wrong.
set(package "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME}")
file(GLOB_RECURSE libraries "${top}/runtime/usr/lib/*.so.*.*.*")
set(shlibs "")
set(arguments "")
foreach(library IN LISTS libraries)
  cmake_path(GET library FILENAME file)
  string(REGEX REPLACE "^(lib[A-Za-z]+)\\.so\\.([0-9]+).*" "\\1 \\2" name_and_version "${file}")
  string(APPEND shlibs "${name_and_version} ${package} (>= ${CPACK_PACKAGE_VERSION})\n")
  list(APPEND arguments "-e${library}")
  cmake_path(GET library PARENT_PATH library_directory)
endforeach()
file(WRITE "${work}/shlibs" "${shlibs}")
file(WRITE "${work}/triggers" "activate-noawait ldconfig\n")
execute_process(
  COMMAND dpkg-gensymbols "-p${package}" "-v${CPACK_PACKAGE_VERSION}" "-P${top}/runtime" ${arguments} -c0
          "-O${work}/symbols"
  WORKING_DIRECTORY "${work}"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(READ "${work}/symbols" symbols)
string(REPLACE "#MINVER#\n" "#MINVER#\n* Build-Depends-Package: ${CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME}\n"
               symbols "${symbols}")
file(WRITE "${work}/symbols" "${symbols}")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA "${work}/shlibs" "${work}/symbols" "${work}/triggers")

# find_dependencies(<result> <component>)
#
# The packages that the programs and libraries of a component link to, but for that of our own libraries.
function(find_dependencies result component)
  file(GLOB_RECURSE files "${top}/${component}/usr/bin/*" "${top}/${component}/usr/lib/*.so.*.*.*")
  execute_process(
    COMMAND dpkg-shlibdeps -O "-l${library_directory}" "-L${work}/shlibs" "-x${package}" ${files}
    WORKING_DIRECTORY "${work}"
    OUTPUT_VARIABLE dependencies
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "^shlibs:Depends=" "" dependencies "${dependencies}")
  set(${result}
      "${dependencies}"
      PARENT_SCOPE)
endfunction()

# Nothing links to the plug-in that shows the icons.
find_dependencies(dependencies runtime)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "${dependencies}, libqt5svg5")
find_dependencies(dependencies gallery)
set(CPACK_DEBIAN_GALLERY_PACKAGE_DEPENDS "${package} (= ${version}), ${dependencies}")
find_dependencies(dependencies development)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "${package} (= ${version}), ${dependencies}, libeigen3-dev (>= 3.3), qtbase5-dev (>= 5.8)")
