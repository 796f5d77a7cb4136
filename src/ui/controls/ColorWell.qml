// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Not "pragma ComponentBehavior: Bound": a Loader of Qt 6.4 cannot make bound components.
// qmllint disable unqualified

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A button that shows a colour, and opens the choice of another; without opacity.
T.Button {
    id: root

    required property string label ///< What is coloured; for assistive technology.
    required property color value
    required property string hex ///< The same as text.
    required property OptionsEditor options ///< Judges what is typed.

    signal picked(color color)
    signal typed(string text)

    implicitWidth: Theme.scaled(44)
    implicitHeight: Theme.regularControl
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.description: value.toString()
    Accessible.onPressAction: root.clicked()

    onClicked: popover.active = true

    background: Box {
        radius: Theme.controlRadius
        color: Theme.controlFill
        borderWidth: 1
        borderColor: Theme.controlBorder

        Box {
            anchors.fill: parent
            anchors.margins: 4
            radius: 3
            color: root.value
            borderWidth: 1
            borderColor: Theme.controlBorder
        }
        FocusRing {
            visible: root.visualFocus
        }
    }

    Loader {
        id: popover

        active: false
        sourceComponent: ColorPopover {
            parent: root
            x: root.mirrored ? 0 : root.width - width
            y: root.height + 3
            visible: true
            label: root.label
            value: root.value
            hex: root.hex
            options: root.options
            onPicked: color => root.picked(color)
            onTyped: text => root.typed(text)
            onClosed: popover.active = false
        }
    }
}
