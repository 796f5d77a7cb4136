// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// Holds the settings while they are shown, and while they fade.
Item {
    id: root

    required property PixpressApp app
    property bool isClosing: false

    signal closed

    Connections {
        target: root.app.appState

        function onShowSettingsChanged() {
            if (!root.app.appState.showSettings && !root.isClosing)
                sheet.close();
        }
    }

    SettingsView {
        id: sheet

        app: root.app
        visible: true
        // At once, so that asking for the settings while the sheet fades counts again.
        onAboutToHide: {
            root.isClosing = true;
            root.app.appState.showSettings = false;
        }
        onClosed: root.closed()
    }
}
