// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// A small picture of an image file; until it is made, or when it cannot be, a tile with the file's
/// extension in the colour of its format.
Item {
    id: root

    required property url url
    required property Thumbnails thumbnails
    readonly property string pathExtension: picture.pathExtension

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
    Accessible.ignored: true // it repeats the row's name
    Accessible.role: Accessible.Graphic
    Accessible.name: pathExtension.toUpperCase()

    Rectangle {
        readonly property color tint: root.iconColor()

        objectName: "tile"
        anchors.fill: parent
        radius: 8
        color: Qt.rgba(tint.r, tint.g, tint.b, 0.12)
    }
    Text {
        objectName: "extension"
        anchors.centerIn: parent
        visible: !picture.ready
        text: root.pathExtension.toUpperCase()
        font: Theme.tileLabel
        color: root.labelColor()
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    ThumbnailItem {
        id: picture

        anchors.fill: parent
        radius: 8
        url: root.url
        thumbnails: root.thumbnails
    }
}
