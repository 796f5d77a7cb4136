// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// Shows the written file in the desktop's file browser.
T.Button {
    id: root

    implicitWidth: 28
    implicitHeight: 28
    padding: 5 // 28 of the button, 17 of the symbol, and one more that no side can share
    leftPadding: 6
    topPadding: 6
    Accessible.role: Accessible.Button
    Accessible.name: qsTr("Show in Finder")
    Accessible.onPressAction: root.clicked()

    contentItem: Symbol {
        name: "folder"
        size: 17
        color: Theme.secondary
    }
    background: Box {
        radius: 6
        color: root.down ? Theme.controlPressed : Theme.quaternary

        FocusRing {
            visible: root.visualFocus
            controlRadius: 6
        }
    }

    HelpTip {
        text: qsTr("Show in Finder")
        shown: root.hovered && !root.down
    }
}
