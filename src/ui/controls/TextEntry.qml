// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Not "pragma ComponentBehavior: Bound": a Loader of Qt 6.4 cannot make bound components.
// qmllint disable unqualified

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A line of text with a rounded border.
T.TextField {
    id: root

    property string label: placeholderText ///< What is to be entered; for assistive technology.
    /// It holds something for machines, a key or a number of a colour, that is never mirrored.
    property bool isCode: false
    property bool isRefused: false ///< Its text is not accepted.

    implicitWidth: Theme.scaled(120)
    implicitHeight: Theme.regularControl
    leftPadding: 7
    rightPadding: 7
    topPadding: 0
    bottomPadding: 0
    horizontalAlignment: TextInput.AlignLeft
    verticalAlignment: TextInput.AlignVCenter
    font: isCode ? Theme.bodyMonospaced : Theme.body
    color: Theme.primary
    selectionColor: Theme.selection
    selectedTextColor: Theme.primary
    selectByMouse: true
    passwordCharacter: "•"
    validator: SingleLine {}
    LayoutMirroring.enabled: isCode ? false : undefined // as it is inherited

    Accessible.role: Accessible.EditableText
    Accessible.name: label
    Accessible.passwordEdit: echoMode === TextInput.Password

    background: Box {
        radius: Theme.controlRadius
        color: Theme.fieldFill
        borderWidth: root.isRefused ? 2 : 1
        borderColor: root.isRefused ? Theme.redText : Theme.controlBorder

        FocusRing {
            visible: root.activeFocus
        }
    }

    Text {
        anchors.fill: parent
        anchors.leftMargin: root.leftPadding
        anchors.rightMargin: root.rightPadding
        visible: root.length === 0 && root.preeditText === ""
        text: root.placeholderText
        font: root.font
        color: Theme.tertiary
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: editMenu.active = true
    }

    Loader {
        id: editMenu

        active: false
        sourceComponent: EditMenu {
            entry: root
            onClosed: editMenu.active = false
            Component.onCompleted: openAtPointer()
        }
    }
}
