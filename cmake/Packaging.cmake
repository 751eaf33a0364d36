# The Debian package, which tools/package makes with cpack: what cmake/Installation.cmake installs,
# and what dpkg has to know about it.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessaly)
set(CPACK_PACKAGE_VENDOR "Tessaly developers")
set(CPACK_PACKAGE_CONTACT "${TESSALY_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "see where the space on your disks has gone")
set(CPACK_PACKAGE_DESCRIPTION
"Tessaly scans a folder and shows what takes up its space: one level at a
time, the largest first, each row with its size and its share of the whole.
A click leads down into a folder and another one up again.
.
Every scan is kept, so that it can be opened again without scanning. Images,
texts, documents, sounds and videos can be looked at on the way, and any item
be shown in the file manager.")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://tessaly.example/")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT) # tessaly_1.2.3_amd64.deb
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# The libraries that the program is linked with are found by dpkg-shlibdeps. What Qt loads by itself
# and what is spoken to over the bus is not: the program works without, and better with it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
string(CONCAT CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "fonts-inter, " # what the window is drawn for
    "qt6-image-formats-plugins, " # previews of more kinds of images
    "qt6-translations-l10n, " # Qt's own dialogs in the user's language
    "qt6-wayland, "
    "udisks2") # ejects drives
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "notification-daemon")

include(CPack)
