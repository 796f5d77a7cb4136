// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// The options of where results are written.
FormSection {
    id: root

    required property OptionsEditor options

    title: qsTr("Output")

    FormRow {
        Column {
            width: parent.width
            spacing: 4

            PickerRow {
                objectName: "destination"
                width: parent.width
                label: qsTr("Save to")
                hint: root.options.destinationDescription
                model: root.options.destinations
                currentIndex: root.options.destination
                onPicked: index => root.options.destination = index
            }
            CaptionText {
                objectName: "destinationDescription"
                width: parent.width
                text: root.options.destinationDescription
                Accessible.ignored: true // the choice above has it for its description
            }
        }
    }
    LateRow {
        objectName: "folderRow"
        visible: root.options.savesToFolder
        options: root.options
        view: "FolderChoice"
    }
}
