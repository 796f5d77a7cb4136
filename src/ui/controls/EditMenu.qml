// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// What a secondary click on a line of text offers.
ContextMenu {
    id: root

    required property T.TextField entry
    readonly property bool canCopy: entry.selectedText !== "" && entry.echoMode === TextInput.Normal

    ContextMenuItem {
        text: qsTr("Cut")
        enabled: root.canCopy
        onTriggered: root.entry.cut()
    }
    ContextMenuItem {
        text: qsTr("Copy")
        enabled: root.canCopy
        onTriggered: root.entry.copy()
    }
    ContextMenuItem {
        text: qsTr("Paste")
        enabled: root.entry.canPaste
        onTriggered: root.entry.paste()
    }
    ContextMenuItem {
        text: qsTr("Select All")
        enabled: root.entry.length > 0
        onTriggered: root.entry.selectAll()
    }
}
