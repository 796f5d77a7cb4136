// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// Shows a colour and lets the user pick another, without opacity.
T.Button {
    id: root

    required property string label ///< What is coloured; for assistive technology.
    required property color value

    signal picked(color color)

    implicitWidth: 44
    implicitHeight: Theme.regularControl
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: label
    Accessible.description: value.toString()
    Accessible.onPressAction: click()

    onClicked: dialog.active = true

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.controlFill
        border.width: 1
        border.color: Theme.controlBorder

        Rectangle {
            anchors.fill: parent
            anchors.margins: 4
            radius: 3
            color: root.value
            border.width: 1
            border.color: Theme.controlBorder
        }
        FocusRing {
            visible: root.visualFocus
        }
    }

    // Loaded only when it is wanted: the toolkit's dialogs bring all its controls along.
    Loader {
        id: dialog

        active: false
        source: "ColorPanel.qml"
        onLoaded: {
            const panel = item as ColorPanel;
            panel.selectedColor = root.value;
            panel.open();
        }
    }

    Connections {
        target: dialog.item as ColorPanel

        function onAccepted() {
            root.picked((dialog.item as ColorPanel).selectedColor);
            dialog.active = false;
        }
        function onRejected() {
            dialog.active = false;
        }
    }
}
