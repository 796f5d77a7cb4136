// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// An entry of a menu, with its shortcut at the trailing edge.
T.MenuItem {
    id: root

    readonly property color contentColor: highlighted && enabled ? Theme.onAccent : Theme.primary

    implicitWidth: label.implicitWidth + shortcut.implicitWidth + leftPadding + rightPadding + 32
    implicitHeight: Theme.regularControl
    leftPadding: 9
    rightPadding: 9
    font: Theme.body
    opacity: enabled ? 1 : 0.4

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: {
        if (action)
            action.trigger();
        else if (enabled)
            clicked();
    }

    contentItem: Item {
        Shortcut { // to tell what the keys are called here, not to listen to them
            id: keys

            sequence: root.action?.shortcut ?? ""
            enabled: false
        }
        Text {
            id: label

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font: root.font
            color: root.contentColor
            textFormat: Text.PlainText
        }
        Text {
            id: shortcut

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: keys.nativeText
            font: root.font
            color: root.highlighted && root.enabled ? Theme.onAccent : Theme.secondary
            textFormat: Text.PlainText
        }
    }
    background: Box {
        radius: 4
        color: root.highlighted && root.enabled ? Theme.accentFill : "transparent"
    }
}
