// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// The format to convert to.
PickerRow {
    id: root

    required property OptionsEditor options

    objectName: "convertFormat"
    label: qsTr("Convert to")
    model: root.options.formats
    currentIndex: root.options.convertFormat
    onPicked: index => root.options.convertFormat = index
}
