// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
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
    FormRow {
        visible: root.options.convertEnabled

        PickerRow {
            objectName: "convertFormat"
            width: parent.width
            label: qsTr("Convert to")
            model: root.options.formats
            currentIndex: root.options.convertFormat
            onPicked: index => root.options.convertFormat = index
        }
    }
    FormRow {
        objectName: "backgroundRow"
        visible: root.options.requiresBackground

        Column {
            width: parent.width
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
                    onPicked: color => root.options.background = color
                    onTyped: text => root.options.backgroundText = text
                }
            }
            CaptionText {
                width: parent.width
                text: qsTr("Used to fill transparency (JPEG/AVIF don't support alpha)")
            }
        }
    }
}
