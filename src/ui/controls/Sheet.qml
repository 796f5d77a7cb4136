// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A panel of the window, over its dimmed content.
T.Popup {
    id: root

    property string title

    x: Math.round(((parent?.width ?? 0) - width) / 2)
    y: Math.round(((parent?.height ?? 0) - height) / 3)
    modal: true
    dim: true
    focus: true
    padding: 0
    closePolicy: T.Popup.CloseOnEscape

    // The item around the content, to which assistive technology is led, has no other way in.
    Component.onCompleted: contentItem.parent.Accessible.name = title
    // Where the focus is was reported while the sheet was still fading in, and so not shown.
    onOpened: Accessibility.moveTo(contentItem.Window.activeFocusItem)

    T.Overlay.modal: Rectangle {
        color: Theme.dimming
    }

    background: Box {
        radius: 10
        color: Theme.windowBackground
        borderWidth: 1
        borderColor: Theme.controlBorder
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.duration
            easing.type: Easing.InOutQuad
        }
    }
    exit: Transition {
        NumberAnimation {
            property: "opacity"
            from: 1
            to: 0
            duration: Theme.duration
            easing.type: Easing.InOutQuad
        }
    }
}
