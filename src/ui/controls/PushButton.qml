// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A bordered button, or with `prominent` one filled with the accent colour.
T.Button {
    id: root

    property string symbol
    property bool prominent: false
    property bool isBusy: false ///< Disabled because of what it has started, and not dimmed.
    property int controlHeight: Theme.regularControl
    property real labelPadding: 0 ///< Inside the label, at its left and right.
    readonly property color contentColor: prominent ? Theme.onAccent : Theme.primary

    implicitWidth: Math.max(implicitContentWidth + leftPadding + rightPadding, controlHeight)
    implicitHeight: controlHeight
    leftPadding: (controlHeight === Theme.smallControl ? 8 : 12) + labelPadding
    rightPadding: leftPadding
    topPadding: 0
    bottomPadding: 0
    focusPolicy: Qt.StrongFocus
    font: controlHeight === Theme.smallControl ? Theme.subheadline : Theme.body
    opacity: enabled || isBusy ? 1 : 0.45

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }

    contentItem: Item {
        implicitWidth: label.implicitWidth
        implicitHeight: label.implicitHeight

        SymbolLabel {
            id: label

            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width)
            symbol: root.symbol
            text: root.text
            font: root.font
            color: root.contentColor
            spacing: 6
            Accessible.ignored: true
        }
    }
    background: Box {
        radius: Theme.controlRadius
        color: {
            if (root.prominent)
                return root.down ? Qt.darker(Theme.accentFill, 1.2) : Theme.accentFill;
            return root.down ? Theme.controlPressed : Theme.controlFill;
        }
        borderWidth: root.prominent ? 0 : 1
        borderColor: Theme.controlBorder

        FocusRing {
            visible: root.visualFocus
        }
    }
}
