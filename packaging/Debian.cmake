# The Debian package: `cpack` in the build folder makes it. The changelog says which version and
# revision it is, and who maintains it.

file(STRINGS debian/changelog changelog ENCODING UTF-8)
list(GET changelog 0 newest)
list(FILTER changelog INCLUDE REGEX "^ -- ")
list(GET changelog 0 signature)
if(NOT newest MATCHES "^klipra \\(${PROJECT_VERSION}-([0-9]+)\\) ")
    message(FATAL_ERROR "packaging/debian/changelog has no entry for version ${PROJECT_VERSION}")
endif()
set(CPACK_DEBIAN_PACKAGE_RELEASE "${CMAKE_MATCH_1}")
string(REGEX REPLACE "^ -- (.*>)  .*" "\\1" CPACK_DEBIAN_PACKAGE_MAINTAINER "${signature}")

file(STRINGS orvane.klipra.metainfo.xml releases REGEX "<release version=\"${PROJECT_VERSION}\"")
if(NOT releases)
    message(FATAL_ERROR "packaging/orvane.klipra.metainfo.xml has no release ${PROJECT_VERSION}")
endif()

klipra_gzip("${generated}/changelog.Debian.gz" "${CMAKE_CURRENT_SOURCE_DIR}/debian/changelog")
install(FILES "${generated}/changelog.Debian.gz" DESTINATION "${docdir}"
    COMPONENT debian EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME klipra)
set(CPACK_PACKAGE_VENDOR "The Klipra developers")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_CMAKE_PROJECTS
    "${PROJECT_BINARY_DIR};Klipra;ALL;/" "${PROJECT_BINARY_DIR};Klipra;debian;/")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/bin")
# The window's Japanese characters, and the toolkit's own texts in Japanese.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk, qt6-translations-l10n")
# Below the project's description; a dot stands for an empty line.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Klipra opens an MP3 or PCM WAV file, shows its waveform and plays it. A
range of it is deleted, extracted or saved, or the file split, without
re-encoding: what stays is the very bytes that were there, with the tags. It
finds quiet places, keeps every edit in a tree to try things out and go back,
and never writes to the opened file.
.
The window's texts are in Japanese. The command line tool klipra-cli, in
English, cuts, splits, finds quiet places, draws waveforms and tells what is
in a file.")
include(CPack)
