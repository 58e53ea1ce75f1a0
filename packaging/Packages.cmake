# The Debian packages; scripts/package builds them. What a Debian package has beyond the installed files is
# added by debian/add-files.cmake.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillet)
set(CPACK_PACKAGE_VENDOR "The Quillet developers")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # each package has its own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_OUTPUT_FILE_PREFIX "${PROJECT_SOURCE_DIR}/build/packages")
set(CPACK_COMPONENTS_ALL runtime development gallery documentation)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
# There is no public address. The domain is one that is reserved for addresses that are none.
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Quillet developers <no-address@quillet.invalid>")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/debian/add-files.cmake")

# quillet_describe_package(<component> <summary> [<line>...])
#
# Sets the description of a component's package: a summary, what the library is, and more lines about the
# package.
function(quillet_describe_package component summary)
  set(lines "${summary}" "Quillet offers message dialogs with the application's own look, templates"
            "for such dialogs, and drawable, hit-testable shapes from SVG paths." ${ARGN})
  list(JOIN lines "\n" description)
  set(CPACK_DEBIAN_${component}_DESCRIPTION
      "${description}"
      PARENT_SCOPE)
endfunction()

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libquillet${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
quillet_describe_package(RUNTIME "user-interface utilities for Qt 5 Widgets (shared libraries)")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libquillet-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
quillet_describe_package(
  DEVELOPMENT "user-interface utilities for Qt 5 Widgets (development files)" "."
  "This package has what it takes to build programs with it: headers, a CMake"
  "package, pkg-config files, a library for the tests of such programs, and"
  "quillet-svg, which checks and converts SVG files.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "quillet-doc, quillet-gallery")

set(CPACK_DEBIAN_GALLERY_PACKAGE_NAME quillet-gallery)
set(CPACK_DEBIAN_GALLERY_PACKAGE_SECTION devel)
quillet_describe_package(GALLERY "shows what the Quillet library can do" "."
                         "This package has a program that lets you try out all of it.")
# The font that the dialogs ask for.
set(CPACK_DEBIAN_GALLERY_PACKAGE_RECOMMENDS fonts-open-sans)

set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_NAME quillet-doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTATION_PACKAGE_ARCHITECTURE all)
quillet_describe_package(DOCUMENTATION "user-interface utilities for Qt 5 Widgets (documentation)" "."
                         "This package has the guides to it and the reference.")

include(CPack)
