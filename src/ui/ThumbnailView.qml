// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// A small picture of an image file; until it is made, or when it cannot be, a tile with the file's
/// extension in the colour of its format.
ThumbnailItem {
    id: root

    function iconColor(): color {
        switch (pathExtension.toLowerCase()) {
        case "png":
            return Theme.blue;
        case "jpg":
        case "jpeg":
            return Theme.orange;
        case "webp":
            return Theme.green;
        case "avif":
            return Theme.purple;
        default:
            return Theme.gray;
        }
    }

    function labelColor(): color {
        switch (pathExtension.toLowerCase()) {
        case "png":
            return Theme.blueText;
        case "jpg":
        case "jpeg":
            return Theme.orangeText;
        case "webp":
            return Theme.greenText;
        case "avif":
            return Theme.purpleText;
        default:
            return Theme.grayText;
        }
    }

    implicitWidth: 36
    implicitHeight: 36
    radius: 8
    tileColor: {
        const tint = iconColor();
        return Qt.rgba(tint.r, tint.g, tint.b, 0.12);
    }
    Accessible.ignored: true // it repeats the row's name
    Accessible.role: Accessible.Graphic
    Accessible.name: pathExtension.toUpperCase()

    Text {
        objectName: "extension"
        anchors.centerIn: parent
        visible: !root.ready
        text: root.pathExtension.toUpperCase()
        font: Theme.tileLabel
        color: root.labelColor()
        textFormat: Text.PlainText
    }
}
