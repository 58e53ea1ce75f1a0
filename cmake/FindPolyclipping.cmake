# Finds Clipper 6, the library that computes with the areas of polygons, which Debian calls polyclipping. It brings no
# CMake package of its own.

find_path(Polyclipping_INCLUDE_DIR clipper.hpp PATH_SUFFIXES polyclipping)
find_library(Polyclipping_LIBRARY NAMES polyclipping)
mark_as_advanced(Polyclipping_INCLUDE_DIR Polyclipping_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Polyclipping REQUIRED_VARS Polyclipping_LIBRARY Polyclipping_INCLUDE_DIR)

if(Polyclipping_FOUND AND NOT TARGET Polyclipping::Polyclipping)
  add_library(Polyclipping::Polyclipping UNKNOWN IMPORTED)
  set_target_properties(
    Polyclipping::Polyclipping PROPERTIES IMPORTED_LOCATION "${Polyclipping_LIBRARY}"
                                          INTERFACE_INCLUDE_DIRECTORIES "${Polyclipping_INCLUDE_DIR}")
endif()
