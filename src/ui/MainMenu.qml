// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// The window's menu bar. There is no item for a second window.
T.MenuBar {
    id: root

    required property PixpressApp app
    readonly property bool isMenuOpen: pixpressMenu.visible || fileMenu.visible

    implicitWidth: contentItem.implicitWidth
    implicitHeight: Theme.scaled(24) + 4
    horizontalPadding: 6
    delegate: T.MenuBarItem {
        id: item

        readonly property int accessibleRole: Accessible.MenuItem // the toolkit takes it for a bar

        implicitWidth: label.implicitWidth + 18
        implicitHeight: Theme.scaled(24)
        font: Theme.body
        // The bar takes a menu that closes under the pointer for one that is still open: it would
        // ignore the next click, and open the other menu by hovering. So hovering is not passed on.
        hoverEnabled: false
        Accessible.role: Accessible.MenuItem
        Accessible.name: label.text
        Accessible.onPressAction: item.clicked()

        contentItem: Text {
            id: label

            text: item.text.replace("&", "") // which marks the letter that opens it with Alt
            font: item.font
            color: Theme.primary
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            textFormat: Text.PlainText
        }
        background: Box {
            radius: 5
            color: item.highlighted || pointer.hovered ? Theme.quaternary : "transparent"
        }

        HoverHandler {
            id: pointer

            onHoveredChanged: {
                if (hovered && !item.highlighted && root.isMenuOpen)
                    item.triggered(); // from one open menu to the other
            }
        }
    }
    contentItem: Row {
        topPadding: 2
        spacing: 2

        Repeater {
            model: root.contentModel
        }
    }
    background: Rectangle {
        color: Theme.windowBackground
    }

    ContextMenu {
        id: pixpressMenu

        x: root.mirrored ? (parent?.width ?? 0) - width : 0 // away from the leading edge
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent // by its title
        title: "&Pixpress"

        T.Action {
            text: root.app.isOffline ? qsTr("About Pixpress") : qsTr("Settings…")
            shortcut: "Ctrl+,"
            enabled: !root.app.isPanelOpen
            onTriggered: root.app.appState.showSettings = true
        }
        T.Action {
            text: qsTr("Quit")
            shortcut: "Ctrl+Q"
            onTriggered: Qt.quit()
        }
    }
    ContextMenu {
        id: fileMenu

        x: root.mirrored ? (parent?.width ?? 0) - width : 0 // away from the leading edge
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent // by its title
        title: qsTr("&File")

        T.Action {
            text: qsTr("Add Files…")
            shortcut: "Ctrl+O"
            enabled: !root.app.needsKey && !root.app.appState.showSettings && !root.app.isPanelOpen
            onTriggered: root.app.openFilePicker()
        }
    }
}
