// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import Pixpress

/// Turning spokes: something of unknown length is going on. Costs nothing while it is not visible.
Item {
    id: root

    property int size: Theme.scaled(16)
    property color color: Theme.secondary
    property int step: 0
    readonly property alias isTurning: turn.running
    readonly property alias stepDuration: turn.interval ///< Milliseconds.

    implicitWidth: size
    implicitHeight: size

    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("In progress")

    Timer {
        id: turn

        interval: Appearance.reducedMotion ? 500 : 100 // it tells that work goes on, so it stays
        repeat: true
        running: root.visible && root.Window.visibility !== Window.Hidden
        onTriggered: root.step = (root.step + 1) % 8
    }

    Repeater {
        model: 8

        Item {
            required property int index

            anchors.centerIn: parent
            width: 1
            height: root.size
            rotation: index * 45
            opacity: 0.15 + 0.85 * ((index - root.step + 7) % 8) / 7

            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.max(1.5, root.size / 9)
                height: root.size * 0.3
                radius: width / 2
                color: root.color
                antialiasing: true
            }
        }
    }
}
