// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A switch with its label before it, filling the row it stands in.
T.Switch {
    id: root

    function flip() {
        toggle();
        toggled(); // which toggle() leaves out
    }

    implicitWidth: label.implicitWidth + 12 + indicator.implicitWidth
    implicitHeight: Theme.regularControl
    focusPolicy: Qt.StrongFocus
    font: Theme.body
    opacity: enabled ? 1 : 0.45

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onPressAction: root.flip()
    Accessible.onToggleAction: root.flip()

    contentItem: Text {
        id: label

        text: root.text
        font: root.font
        color: Theme.primary
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        leftPadding: root.mirrored ? root.indicator.width + 12 : 0
        rightPadding: root.mirrored ? 0 : root.indicator.width + 12
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    indicator: SwitchFace {
        x: root.mirrored ? 0 : root.width - width
        y: (root.height - height) / 2
        implicitWidth: Theme.scaled(38)
        implicitHeight: Theme.scaled(22)
        trackColor: root.checked ? Theme.accentFill : Theme.switchTrack
        knobColor: root.down ? Theme.switchKnobPressed : Theme.switchKnob
        knobBorderColor: Theme.switchKnobBorder
        position: root.visualPosition

        Behavior on trackColor {
            ColorAnimation {
                duration: Theme.duration
            }
        }
        Behavior on position {
            enabled: !root.down

            NumberAnimation {
                duration: Theme.duration
                easing.type: Easing.InOutQuad
            }
        }

        FocusRing {
            visible: root.visualFocus
            controlRadius: parent.height / 2
        }
    }
}
