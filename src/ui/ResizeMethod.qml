// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// How a picture is resized, and what that means.
Column {
    id: root

    required property OptionsEditor options

    spacing: 4

    PickerRow {
        objectName: "resizeMode"
        width: parent.width
        label: qsTr("Method")
        model: root.options.resizeModes
        currentIndex: root.options.resizeMode
        onPicked: index => root.options.resizeMode = index
    }
    CaptionText {
        objectName: "resizeDescription"
        width: parent.width
        text: root.options.resizeModeDescription
    }
}
