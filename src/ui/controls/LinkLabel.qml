// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A text that opens a page in the user's browser.
T.AbstractButton {
    id: root

    property url page
    readonly property int accessibleRole: Accessible.Link // the toolkit takes it for a button

    implicitWidth: label.implicitWidth
    implicitHeight: label.implicitHeight
    focusPolicy: Qt.StrongFocus
    font: Theme.captionMedium

    Accessible.role: Accessible.Link
    Accessible.name: text
    Accessible.onPressAction: root.clicked()

    onClicked: Qt.openUrlExternally(page)

    contentItem: Text {
        id: label

        text: root.text
        font.family: root.font.family
        font.pixelSize: root.font.pixelSize
        font.weight: root.font.weight
        font.underline: root.hovered
        color: Theme.blueText
        horizontalAlignment: Text.AlignLeft
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    background: Item {
        FocusRing {
            visible: root.visualFocus
            controlRadius: 2
        }
    }

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
