// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Pixpress

/// The form of the options that the files added next get.
Rectangle {
    id: root

    required property OptionsEditor options

    color: Theme.sidebarBackground
    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Compression options")

    Flickable {
        id: flickable

        objectName: "form"
        anchors.fill: parent
        contentHeight: form.implicitHeight + 2 * form.y
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        T.ScrollBar.vertical: OverlayScrollBar {}

        ColumnLayout {
            id: form

            x: 12
            y: 14
            width: parent.width - 2 * x
            spacing: 18

            ResizeSection {
                options: root.options
                Layout.fillWidth: true
            }
            FormatSection {
                options: root.options
                Layout.fillWidth: true
            }
            MetadataSection {
                options: root.options
                Layout.fillWidth: true
            }
            OutputSection {
                options: root.options
                Layout.fillWidth: true
            }
        }
    }

    FocusReveal {
        flickable: flickable
    }
}
