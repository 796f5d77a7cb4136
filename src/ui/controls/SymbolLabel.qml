// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// A symbol followed by a text, in one colour. The symbol is as large as the text asks for.
Item {
    id: root

    property string symbol
    property string text
    property font font: Theme.body
    property color color: Theme.primary
    property int wrapMode: Text.NoWrap
    property real spacing: 4
    readonly property alias truncated: label.truncated
    readonly property real textX: symbol === "" ? 0 : picture.size + (text === "" ? 0 : spacing)

    implicitWidth: textX + Math.ceil(label.implicitWidth)
    implicitHeight: Math.max(symbol === "" ? 0 : picture.size, label.height)

    Accessible.role: Accessible.StaticText
    Accessible.name: Accessible.ignored ? "" : text // whose changes would be told too

    Symbol {
        id: picture

        anchors.left: parent.left
        y: root.wrapMode === Text.NoWrap ? Math.round((root.height - size) / 2) : 0
        visible: root.symbol !== ""
        name: root.symbol
        color: root.color
        size: Math.round(root.font.pixelSize * 1.25)
    }

    Text {
        id: label

        anchors.left: parent.left
        anchors.leftMargin: root.textX
        anchors.verticalCenter: parent.verticalCenter
        width: root.width - root.textX
        text: root.text
        font: root.font
        color: root.color
        elide: root.wrapMode === Text.NoWrap ? Text.ElideRight : Text.ElideNone
        wrapMode: root.wrapMode
        maximumLineCount: root.wrapMode === Text.NoWrap ? 1 : 1000 // also where it has line breaks
        horizontalAlignment: Text.AlignLeft
        textFormat: Text.PlainText
    }
}
