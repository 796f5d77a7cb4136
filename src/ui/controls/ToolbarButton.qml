// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A button of the toolbar: its symbol alone, with its help in a tip.
T.Button {
    id: root

    property string symbol
    property string help
    /// Of the pointer; a disabled button is not told itself, and needs its help the most.
    readonly property bool isPointedAt: {
        if (enabled)
            return hovered;
        return visible && pointer.hovered && contains(mapFromItem(parent, pointer.point.position));
    }

    implicitWidth: Theme.scaled(34)
    implicitHeight: Theme.largeControl - 2
    focusPolicy: Qt.TabFocus
    opacity: enabled ? 1 : 0.35

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: help === text ? "" : help
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: root.symbol
            color: Theme.primary
            size: Theme.scaled(18)
        }
    }
    background: Box {
        radius: Theme.controlRadius
        color: root.down ? Theme.controlPressed : root.hovered ? Theme.quaternary : "transparent"

        FocusRing {
            visible: root.visualFocus
        }
    }

    HoverHandler {
        id: pointer

        parent: root.parent
    }
    HelpTip {
        text: root.help
        shown: root.isPointedAt && !root.down
    }
}
