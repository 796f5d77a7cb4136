// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A thin scroll bar over the content's edge, there while there is something to scroll.
T.ScrollBar {
    id: root

    implicitWidth: 11
    implicitHeight: 11
    padding: 2
    minimumSize: 0.06
    visible: size < 1
    Accessible.role: Accessible.ScrollBar
    Accessible.name: qsTr("Scroll bar")

    contentItem: Box {
        implicitWidth: 7
        radius: 3.5
        color: root.pressed ? Theme.secondary : Theme.gray
        opacity: root.pressed || root.hovered ? 0.9 : 0.55
    }
}
