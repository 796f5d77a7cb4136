// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// The options of the format, and of what stands where the new one has no transparency.
FormSection {
    id: root

    required property OptionsEditor options

    title: qsTr("Output Format")

    FormRow {
        ToggleSwitch {
            objectName: "convertEnabled"
            width: parent.width
            text: qsTr("Convert Format")
            checked: root.options.convertEnabled
            onToggled: root.options.convertEnabled = checked
        }
    }
    LateRow {
        visible: root.options.convertEnabled
        options: root.options
        view: "FormatChoice"
    }
    LateRow {
        objectName: "backgroundRow"
        visible: root.options.requiresBackground
        options: root.options
        view: "BackgroundChoice"
    }
}
