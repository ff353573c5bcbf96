# The Debian package, which CPack makes of the installation; see scripts/package.

# Debian's own changelog has the day in the mail's form.
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C date -u -d "${FVQA_RELEASE_DATE} 12:00 UTC" "+%a, %d %b %Y %T +0000"
  OUTPUT_VARIABLE release_time OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(debian/changelog.in "${generated}/changelog.Debian" @ONLY)
compress("${generated}/changelog.Debian" changelog.Debian)

# The licence in the form of Debian's copyright files: its first sentence names the owner, the rest is indented.
file(READ "${PROJECT_SOURCE_DIR}/LICENSE" license)
string(REGEX MATCH "Copyright \\(c\\) ([^.]*)\\." match "${license}")
set(owner "${CMAKE_MATCH_1}")
string(STRIP "${license}" license)
string(REPLACE "\n\n" "\n.\n" license "${license}")
string(REPLACE "\n" "\n " license " ${license}")
configure_file(debian/copyright.in "${generated}/copyright" @ONLY)

set(documents
  "${generated}/copyright" "${generated}/changelog.Debian.gz" "${generated}/changelog.gz")
install(FILES ${documents} DESTINATION share/doc/fvqa300)
install(FILES debian/lintian-overrides DESTINATION share/lintian/overrides RENAME fvqa300)

file(READ "${CMAKE_CURRENT_SOURCE_DIR}/debian/description.txt" CPACK_DEBIAN_PACKAGE_DESCRIPTION)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME fvqa300)
set(CPACK_PACKAGE_VENDOR "The fvqa300 authors")
set(CPACK_PACKAGE_CONTACT "${FVQA_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "viewer for the raw data files of gas analysers")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://example.org/fvqa300")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
# Files are installed as into the root of a system, so that the launchers name the place that they will have there.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
# Whatever the builder's umask is.
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${FVQA_PACKAGE_RELEASE})
set(CPACK_DEBIAN_PACKAGE_SECTION non-free/science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# What opens the manual.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xdg-utils)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "bash-completion, pdf-viewer")
include(CPack)
