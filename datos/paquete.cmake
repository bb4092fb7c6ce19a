# The Debian package: cmake --build build/release --target package.
# What the programs link is found by shlibdeps; QML modules, plugins and the
# like are loaded by name, so the list that also ./run installs names them.
file(STRINGS ${PROJECT_SOURCE_DIR}/scripts/usar.txt usar REGEX "^[^#]")
list(JOIN usar ", " CPACK_DEBIAN_PACKAGE_DEPENDS)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orcalin)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Keep files and folders in one archive (Spanish interface)")
set(CPACK_PACKAGE_DESCRIPTION
"A desktop application that makes one .okz archive out of whatever is dropped
on it, encrypted if asked to, and opens such archives to look inside. The
archives are made of standard parts: tar, zstd and age.

Guarda archivos y carpetas en un solo archivo .okz, cifrado si se quiere, y
abre esos archivos para mirar dentro y recuperar lo que haga falta.")
# The staging folder must not get into what is written while installing.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "The Orcalin authors <orcalin@localhost>")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-dbus-session-bus | dbus-session-bus")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "python3-nautilus, thunarx-python, caja-actions")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
include(CPack)
