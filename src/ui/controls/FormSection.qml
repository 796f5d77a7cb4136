// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// A group of a form: a header, and its rows in a box.
ColumnLayout {
    id: root

    property string title
    default property alias rows: column.data

    spacing: 8

    Accessible.role: Accessible.Grouping
    Accessible.name: title

    Text {
        visible: text !== ""
        text: root.title
        font: Theme.headline
        color: Theme.primary
        textFormat: Text.PlainText
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        Layout.fillWidth: true
        Layout.leftMargin: 10
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }

    Box {
        radius: Theme.groupRadius
        color: Theme.groupBackground
        borderWidth: 1
        borderColor: Theme.separator
        implicitHeight: column.implicitHeight
        Layout.fillWidth: true

        Column {
            id: column

            width: parent.width
        }
    }
}
