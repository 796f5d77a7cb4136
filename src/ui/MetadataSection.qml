// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// The options of what is kept beside the pixels.
FormSection {
    id: root

    required property OptionsEditor options

    title: qsTr("Preserve Metadata")

    FormRow {
        ToggleSwitch {
            objectName: "preserveCopyright"
            width: parent.width
            text: qsTr("Copyright")
            checked: root.options.preserveCopyright
            onToggled: root.options.preserveCopyright = checked
        }
    }
    FormRow {
        ToggleSwitch {
            objectName: "preserveCreation"
            width: parent.width
            text: qsTr("Creation Date")
            checked: root.options.preserveCreation
            onToggled: root.options.preserveCreation = checked
        }
    }
    FormRow {
        ToggleSwitch {
            objectName: "preserveLocation"
            width: parent.width
            text: qsTr("GPS Location")
            checked: root.options.preserveLocation
            onToggled: root.options.preserveLocation = checked
        }
    }
}
