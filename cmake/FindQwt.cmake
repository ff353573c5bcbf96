# Finds Qwt, which installs neither a package file for CMake nor one for pkg-config that works without Qt's
# OpenGL module. Gives the target Qwt::Qwt; call find_package for Qt's Widgets and PrintSupport before.

find_path(Qwt_INCLUDE_DIR NAMES qwt_plot.h PATH_SUFFIXES qwt qwt6 qt5/qwt qwt-qt5 qt5/qwt6)
find_library(Qwt_LIBRARY NAMES qwt-qt5 qwt6-qt5 qwt)
mark_as_advanced(Qwt_INCLUDE_DIR Qwt_LIBRARY)
if(Qwt_INCLUDE_DIR AND EXISTS "${Qwt_INCLUDE_DIR}/qwt_global.h")
  file(STRINGS "${Qwt_INCLUDE_DIR}/qwt_global.h" version_line REGEX "^#define[ \t]+QWT_VERSION_STR[ \t]+\"")
  string(REGEX REPLACE ".*\"([0-9.]+)\".*" "\\1" Qwt_VERSION "${version_line}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Qwt REQUIRED_VARS Qwt_LIBRARY Qwt_INCLUDE_DIR VERSION_VAR Qwt_VERSION)

if(Qwt_FOUND AND NOT TARGET Qwt::Qwt)
  # Qwt 6.1 writes a destructor as "~QwtSeriesStore<T>", which C++20 no longer allows. This copy of the header is
  # mended; included first, it takes the place of the installed one.
  file(READ "${Qwt_INCLUDE_DIR}/qwt_series_store.h" series_store)
  string(REPLACE "~QwtSeriesStore<T>()" "~QwtSeriesStore()" series_store "${series_store}")
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/mended/mended/qwt_series_store.h" CONTENT "${series_store}" @ONLY)
  add_library(Qwt::Qwt UNKNOWN IMPORTED)
  set_target_properties(Qwt::Qwt PROPERTIES
    IMPORTED_LOCATION "${Qwt_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${Qwt_INCLUDE_DIR};${PROJECT_BINARY_DIR}/mended"
    INTERFACE_COMPILE_DEFINITIONS QWT_DLL
    INTERFACE_LINK_LIBRARIES "Qt5::Widgets;Qt5::PrintSupport")
endif()
