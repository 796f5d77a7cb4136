// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// The ring around the control that has the keyboard.
Box {
    property real controlRadius: Theme.controlRadius

    anchors.fill: parent
    anchors.margins: -3
    radius: controlRadius + 3
    color: "transparent"
    borderWidth: 3
    borderColor: Theme.focusRing
}
