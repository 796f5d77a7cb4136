// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// What the program is, its version, and who made it.
ColumnLayout {
    id: root

    required property PixpressApp app

    spacing: 16

    Item {
        Layout.fillWidth: true
        Layout.fillHeight: true
    }
    Symbol {
        name: "arrow.down.right.and.arrow.up.left"
        size: 54
        color: Theme.blue
        Layout.alignment: Qt.AlignHCenter
    }
    Text {
        text: "Pixpress"
        font: Theme.title
        color: Theme.primary
        textFormat: Text.PlainText
        Layout.alignment: Qt.AlignHCenter
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Text {
        objectName: "version"
        text: qsTr("Version %1").arg(About.version)
        font: Theme.caption
        color: Theme.secondary
        textFormat: Text.PlainText
        Layout.alignment: Qt.AlignHCenter
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Text {
        text: root.app.isOffline ? qsTr("Compresses on this computer: your pictures never leave it") : qsTr("Image compression powered by TinyPNG API")
        font: Theme.subheadline
        color: Theme.secondary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        Layout.fillWidth: true
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Divider {
        Layout.preferredWidth: 180
        Layout.topMargin: 4
        Layout.alignment: Qt.AlignHCenter
    }
    Row {
        spacing: 4
        Layout.alignment: Qt.AlignHCenter

        CreditsText {
            credits: qsTr("Built with ❤️ by")
            font: Theme.subheadline
            color: Theme.primary
        }
        LinkLabel {
            text: About.authorName
            page: About.authorPage
            font: Theme.subheadlineMedium
        }
    }
    Item {
        Layout.fillHeight: true
    }
}
