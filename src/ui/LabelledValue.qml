// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// A row of a form that shows a number after its label.
FormRow {
    id: root

    required property string label
    required property string value
    property color valueColor: Theme.primary

    Accessible.role: Accessible.StaticText
    Accessible.name: label + " " + value

    RowLayout {
        width: parent.width

        Text {
            text: root.label
            font: Theme.body
            color: Theme.primary
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
            Layout.fillWidth: true
            Accessible.ignored: true
        }
        Text {
            objectName: "value"
            text: root.value
            font: Theme.bodyMonospaced // for its digits: Qt 6.4 cannot ask a font for its tabular ones
            color: root.valueColor
            textFormat: Text.PlainText
            Accessible.ignored: true
        }
    }
}
