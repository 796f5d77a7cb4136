# SPDX-FileCopyrightText: 2026 The Pixpress authors
# SPDX-License-Identifier: GPL-3.0-or-later

# The Debian package, made by `cpack`: tools/package.
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Pixpress compresses pictures. On request it also resizes them, converts them
to another of these formats and keeps chosen metadata. The result is written
beside the file, over it, or into a folder.
.
This package contains two applications with the same window: pixpress, which
uses the TinyPNG web service with a key of your own, and pixpress-offline,
which compresses on this computer and needs no network. pixpress-cli does
either from the command line. Pictures are decoded in a sandboxed process of
their own.")

# What is linked is found by dpkg-shlibdeps. This is what is loaded by name: the views' QML modules,
# the file dialog's among them, the display's plugin, the codecs of AVIF (which were a part of libheif
# before 1.17), the plugin that reads the logo (a part of Qt SVG before Debian 13), the fonts, and what
# verifies the service.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(needed qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtquick-layouts
    qml6-module-qtquick-templates qml6-module-qtquick-controls qml6-module-qtquick-dialogs
    qml6-module-qtqml qml6-module-qtqml-workerscript qml6-module-qt-labs-folderlistmodel
    qt6-wayland "libheif-plugin-aomenc | libheif1 (<< 1.17)" "libheif-plugin-dav1d | libheif1 (<< 1.17)"
    "qt6-svg-plugins | libqt6svg6 (<< 6.7.2-5~)"
    fonts-inter fonts-jetbrains-mono fonts-noto-color-emoji ca-certificates)
list(JOIN needed ", " CPACK_DEBIAN_PACKAGE_DEPENDS)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-noto-cjk, qt6-translations-l10n, xdg-utils")

execute_process(COMMAND env LC_ALL=C date -u -R -d ${PIXPRESS_RELEASE_DATE}
    OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
configure_file(debian/changelog.in debian/changelog.Debian @ONLY)
configure_file(debian/copyright.in debian/copyright @ONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_BINARY_DIR}/debian/stage.cmake)
configure_file(debian/stage.cmake.in debian/stage.cmake @ONLY)
