# What `cmake --install` puts where, and the Debian package.
include(GNUInstallDirs)

configure_file(Packaging/Linux/tarvex.1 "${CMAKE_BINARY_DIR}/Packaging/tarvex.1" @ONLY)

install(TARGETS tarvex RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(FILES Packaging/Linux/tarvex.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES Packaging/Linux/icons/tarvex.svg DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
install(FILES Packaging/Linux/icons/tarvex-symbolic.svg
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps")
install(FILES "${CMAKE_BINARY_DIR}/Packaging/tarvex.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES VERSION DESTINATION "${CMAKE_INSTALL_DATADIR}/tarvex")
install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/tarvex")
install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/tarvex" RENAME copyright)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvex)
set(CPACK_PACKAGE_VENDOR Tarvex)
set(CPACK_PACKAGE_CONTACT "Tarvex developers <developers@tarvex.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "divide each display into zones and put windows into them")
set(CPACK_PACKAGE_DESCRIPTION
    "Drag any window by its title bar and press Super: the zones of the display appear, and the window takes "
    "the one under the pointer when the button is released. Zones are drawn in a full-screen editor.")
string(CONCAT CPACK_PACKAGE_DESCRIPTION ${CPACK_PACKAGE_DESCRIPTION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
# The names of the libraries' packages differ between releases; dpkg-shlibdeps knows them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# A face for the texts, and a session bus for the status item and for reaching the instance that runs.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core | fonts-noto-core, dbus-user-session | dbus-x11")
include(CPack)
