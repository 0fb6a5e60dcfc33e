# The Debian package, made by CPack from the install rules:
#   cmake --preset package && cmake --build --preset package
# leaves build/package/tolvane_<version>-<revision>_<arch>.deb. Its shared
# library dependencies are computed by dpkg-shlibdeps; the World Map's
# pictures are a dependency of their own, and gpsd and espeak-ng, which the
# program uses when they are there, are recommended.

# The tools the package is made with.
tolvane_require_program(TOLVANE_DPKG_SHLIBDEPS_PROGRAM dpkg-shlibdeps dpkg-dev)
tolvane_require_program(TOLVANE_FILE_PROGRAM file file)
tolvane_require_program(TOLVANE_GZIP_PROGRAM gzip gzip)
# The package is checked with these before and after it is installed
# (scripts/install-test.sh).
tolvane_require_program(TOLVANE_LINTIAN_PROGRAM lintian lintian)
tolvane_require_program(TOLVANE_MAN_PROGRAM man man-db)

set(TOLVANE_DEBIAN_DIR ${PROJECT_SOURCE_DIR}/resources/debian)
set(TOLVANE_DEBIAN_REVISION 1)
set(TOLVANE_DEBIAN_VERSION ${PROJECT_VERSION}-${TOLVANE_DEBIAN_REVISION})

# The changelog's newest entry must name the version being packaged, or the
# package would describe another release than the one it holds.
file(STRINGS ${TOLVANE_DEBIAN_DIR}/changelog TOLVANE_CHANGELOG_HEAD LIMIT_COUNT 1)
if(NOT TOLVANE_CHANGELOG_HEAD MATCHES "^tolvane \\(${TOLVANE_DEBIAN_VERSION}\\) ")
  message(FATAL_ERROR "resources/debian/changelog does not begin with version "
                      "${TOLVANE_DEBIAN_VERSION}: add an entry for it")
endif()

# Debian keeps manual pages and changelogs compressed with gzip -9, without
# a time stamp so that the same sources give the same package.
set(TOLVANE_COMPRESSED_DIR ${CMAKE_BINARY_DIR}/compressed)
function(tolvane_compress source name)
  set(compressed ${TOLVANE_COMPRESSED_DIR}/${name}.gz)
  add_custom_command(
    OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E copy ${source} ${TOLVANE_COMPRESSED_DIR}/${name}
    COMMAND ${TOLVANE_GZIP_PROGRAM} -9nf ${TOLVANE_COMPRESSED_DIR}/${name}
    DEPENDS ${source})
  set_property(GLOBAL APPEND PROPERTY TOLVANE_COMPRESSED_FILES ${compressed})
endfunction()

tolvane_compress(${PROJECT_SOURCE_DIR}/resources/man/tolvane.1 tolvane.1)
tolvane_compress(${PROJECT_SOURCE_DIR}/resources/man/tolvane-tool.1 tolvane-tool.1)
tolvane_compress(${TOLVANE_DEBIAN_DIR}/changelog changelog.Debian)
get_property(TOLVANE_COMPRESSED_FILES GLOBAL PROPERTY TOLVANE_COMPRESSED_FILES)
add_custom_target(tolvane_compressed ALL DEPENDS ${TOLVANE_COMPRESSED_FILES})

install(FILES ${TOLVANE_COMPRESSED_DIR}/tolvane.1.gz ${TOLVANE_COMPRESSED_DIR}/tolvane-tool.1.gz
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${TOLVANE_DEBIAN_DIR}/copyright ${TOLVANE_COMPRESSED_DIR}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES ${TOLVANE_DEBIAN_DIR}/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
        RENAME tolvane)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tolvane)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE ${TOLVANE_DEBIAN_REVISION})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_PACKAGE_CONTACT "The Tolvane developers <maintainers@users.noreply.c-seed-dd4d54f0.example>")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The first line is the synopsis; CPack indents the others and marks the
# empty one as a paragraph break, as the control file wants them.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "GPS utility for desktops, phones and car computers
Tolvane GPS Utilities reads a GPS receiver on a serial, USB or Bluetooth
port, a phone's shared receiver or gpsd, and shows what it reports in
full-window views made for small screens: position, satellites, compass,
speed and trip. It logs tracks as GPX, KML or text and the raw NMEA 0183
stream, keeps waypoints and points of interest, guides through a list of
destinations with spoken arrival texts, sounds speed alarms and shows
scanned maps calibrated by reference points.

tolvane-tool runs the same GPS pipeline without a window: it replays and
converts recorded NMEA logs and watches a live receiver.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS xplanet-images)
# Qt's translations label the standard buttons and the file dialog in the
# user's language; the Chinese texts need a font with Chinese characters.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
  "gpsd, espeak-ng, qt6-translations-l10n, fonts-noto-cjk | fonts-wqy-microhei | fonts-droid-fallback")
# A release build without its symbols: the package holds stripped programs.
set(CPACK_STRIP_FILES ON)
include(CPack)
