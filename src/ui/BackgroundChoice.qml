// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// The colour that stands where the new format has no transparency.
Column {
    id: root

    required property OptionsEditor options

    spacing: 4

    RowLayout {
        width: parent.width

        Text {
            text: qsTr("Background")
            font: Theme.body
            color: Theme.primary
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignLeft
            textFormat: Text.PlainText
            Layout.fillWidth: true
            Accessible.ignored: true
        }
        ColorWell {
            objectName: "background"
            label: qsTr("Background")
            value: root.options.background
            hex: root.options.backgroundText
            options: root.options
            onPicked: color => root.options.background = color
            onTyped: text => root.options.backgroundText = text
        }
    }
    CaptionText {
        width: parent.width
        text: qsTr("Used to fill transparency (JPEG/AVIF don't support alpha)")
    }
}
