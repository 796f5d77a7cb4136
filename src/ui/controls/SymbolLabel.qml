// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// A symbol followed by a text, in one colour. The symbol is as large as the text asks for.
RowLayout {
    id: root

    property string symbol
    property string text
    property font font: Theme.body
    property color color: Theme.primary
    property int wrapMode: Text.NoWrap

    spacing: 4

    Accessible.role: Accessible.StaticText
    Accessible.name: Accessible.ignored ? "" : text // whose changes would be told too

    Symbol {
        visible: root.symbol !== ""
        name: root.symbol
        color: root.color
        size: Math.round(root.font.pixelSize * 1.25)
        Layout.alignment: root.wrapMode === Text.NoWrap ? Qt.AlignVCenter : Qt.AlignTop
    }

    Text {
        visible: text !== ""
        text: root.text
        font: root.font
        color: root.color
        elide: root.wrapMode === Text.NoWrap ? Text.ElideRight : Text.ElideNone
        wrapMode: root.wrapMode
        maximumLineCount: root.wrapMode === Text.NoWrap ? 1 : 1000 // also where it has line breaks
        horizontalAlignment: Text.AlignLeft
        textFormat: Text.PlainText
        Layout.fillWidth: true
        Accessible.ignored: true
    }
}
