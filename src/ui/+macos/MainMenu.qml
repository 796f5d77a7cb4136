// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Qt.labs.platform as Platform
import Pixpress

/// The menu bar at the top of the screen, where macOS has it: the toolkit takes this file instead of
/// its namesake there. Settings and Quit move into the menu of the application by their roles. "Ctrl"
/// is the Command key.
Item {
    id: root

    required property PixpressApp app

    visible: false

    Platform.MenuBar {
        window: root.Window.window

        Platform.Menu {
            title: qsTr("&File")

            Platform.MenuItem {
                text: qsTr("Add Files…")
                shortcut: "Ctrl+O"
                enabled: root.app.appState.isAPIKeyConfigured && !root.app.appState.showSettings && !root.app.isPanelOpen
                onTriggered: root.app.openFilePicker()
            }
            Platform.MenuItem {
                text: qsTr("Settings…")
                role: Platform.MenuItem.PreferencesRole
                shortcut: "Ctrl+,"
                enabled: !root.app.isPanelOpen
                onTriggered: root.app.appState.showSettings = true
            }
            Platform.MenuItem {
                text: qsTr("Quit")
                role: Platform.MenuItem.QuitRole
                shortcut: "Ctrl+Q"
                onTriggered: Qt.quit()
            }
        }
    }
}
