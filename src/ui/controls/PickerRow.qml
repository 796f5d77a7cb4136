// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// The pop-up of some choices under its label.
Column {
    id: root

    required property string label
    property alias model: picker.model
    property alias currentIndex: picker.currentIndex
    property alias hint: picker.hint

    signal picked(int index)

    spacing: 5

    Text {
        width: parent.width
        text: root.label
        font: Theme.body
        color: Theme.primary
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    PopUpButton {
        id: picker

        width: parent.width
        label: root.label
        onActivated: index => root.picked(index)
    }
}
