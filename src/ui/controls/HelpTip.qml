// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Not "pragma ComponentBehavior: Bound": a Loader of Qt 6.4 cannot make bound components.
// qmllint disable unqualified

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// The help that appears when the pointer rests on the control this stands in.
Loader {
    id: root

    property string text
    property bool shown: false

    active: shown
    width: parent.width
    height: parent.height

    sourceComponent: T.ToolTip {
        id: tip

        visible: true
        delay: 600
        text: root.text
        x: Math.round((root.width - width) / 2)
        y: root.height + 6
        margins: 6
        padding: 6
        implicitWidth: Math.min(Math.ceil(implicitContentWidth), Theme.scaled(360)) + leftPadding + rightPadding
        implicitHeight: implicitContentHeight + topPadding + bottomPadding
        closePolicy: T.Popup.NoAutoClose

        contentItem: Text {
            text: tip.text
            font: Theme.subheadline
            color: Theme.primary
            wrapMode: Text.Wrap
            textFormat: Text.PlainText
        }
        background: Box {
            radius: 4
            color: Theme.menuBackground
            borderWidth: 1
            borderColor: Theme.controlBorder
        }
    }
}
