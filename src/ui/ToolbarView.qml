// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// The buttons above the working layout.
Rectangle {
    id: root

    required property PixpressApp app
    required property bool sidebarShown
    readonly property bool hasTasks: app.tasks.count > 0

    signal sidebarToggled
    signal clearedDone

    implicitHeight: Theme.scaled(44)
    color: Theme.windowBackground
    Accessible.role: Accessible.ToolBar
    Accessible.name: qsTr("Toolbar")

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        spacing: 4

        ToolbarButton {
            id: sidebarToggle

            objectName: "sidebarToggle"
            text: root.sidebarShown ? qsTr("Hide Sidebar") : qsTr("Show Sidebar")
            symbol: sidebarToggle.mirrored ? "sidebar.right" : "sidebar.left"
            help: text
            onClicked: root.sidebarToggled()
        }

        Item {
            Layout.fillWidth: true
        }

        ToolbarButton {
            objectName: "addFiles"
            text: qsTr("Add Files")
            symbol: "plus"
            help: qsTr("Add images to compress")
            onClicked: root.app.openFilePicker()
        }
        ToolbarButton {
            objectName: "clearDone"
            visible: root.hasTasks
            enabled: root.app.appState.compressionQueue.hasEndedTasks
            text: qsTr("Clear Done")
            symbol: "checkmark.circle"
            help: qsTr("Clear completed tasks")
            onClicked: {
                root.app.clearCompleted();
                root.clearedDone();
            }
        }
        ToolbarButton {
            objectName: "clearAll"
            visible: root.hasTasks
            text: qsTr("Clear All")
            symbol: "trash"
            help: qsTr("Clear all tasks")
            onClicked: root.app.clearAll()
        }
        Divider {
            Layout.preferredWidth: 1
            Layout.preferredHeight: 18
            Layout.leftMargin: 4
            Layout.rightMargin: 4
        }
        ToolbarButton {
            objectName: "settings"
            text: root.app.isOffline ? qsTr("About") : qsTr("Settings")
            symbol: root.app.isOffline ? "info.circle" : "gearshape"
            help: root.app.isOffline ? qsTr("About Pixpress") : qsTr("Open settings")
            onClicked: root.app.appState.showSettings = true
        }
    }
}
