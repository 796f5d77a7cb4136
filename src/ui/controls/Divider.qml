// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// A hairline, horizontal unless it is given a height. Of the screen's pixels it takes a whole number,
/// the same wherever it lies: a pixel of the layout may be one and a half of them.
Item {
    id: root

    property real pixelRatio: Screen.devicePixelRatio
    readonly property real hairline: Math.max(1, Math.floor(pixelRatio)) / pixelRatio

    implicitWidth: 1
    implicitHeight: 1

    Accessible.role: Accessible.Separator
    Accessible.ignored: true // it parts for the eye what is told apart already

    Box {
        width: root.width < root.height ? root.hairline : root.width
        height: root.width < root.height ? root.height : root.hairline
        color: Theme.separator
    }
}
