# The Debian package: `cpack` in build/ writes tessary_<version>_<arch>.deb.
#
# The programs live in /usr/lib/tessary with the help page beside them (the
# window opens Help/index.html next to its own file); /usr/bin holds links.

set(_private lib/tessary)
install(TARGETS tessary tessary-cli RUNTIME DESTINATION ${_private})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/main/window/Help DESTINATION ${_private})

set(_links ${PROJECT_BINARY_DIR}/packaging/bin)
file(MAKE_DIRECTORY ${_links})
foreach(program tessary tessary-cli)
  file(CREATE_LINK ../${_private}/${program} ${_links}/${program} SYMBOLIC)
  install(FILES ${_links}/${program} DESTINATION bin)
endforeach()

set(_app org.tessary.Tessary)
configure_file(${PROJECT_SOURCE_DIR}/packaging/${_app}.metainfo.xml.in
               ${PROJECT_BINARY_DIR}/packaging/${_app}.metainfo.xml @ONLY)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/${_app}.desktop DESTINATION share/applications)
install(FILES ${PROJECT_SOURCE_DIR}/packaging/${_app}.svg DESTINATION share/icons/hicolor/scalable/apps)
install(FILES ${PROJECT_BINARY_DIR}/packaging/${_app}.metainfo.xml DESTINATION share/metainfo)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessary)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Splits a client's invested money over asset classes")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
    "Tessary splits a client's invested money over six asset classes, account type by account type, "
    "with holdings typed in or imported from Meridel, Basalto and Quorren client files. "
    "tessary-cli runs the same calculation and import without a display.")
set(CPACK_PACKAGE_CONTACT "Tessary maintainers <maintainers@tessary.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Qt's own dialogs in French; the Secret Service client that the keyring library loads.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-translations-l10n, libsecret-1-0")
include(CPack)
