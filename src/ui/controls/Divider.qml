// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// A hairline, horizontal unless it is given a height.
Rectangle {
    implicitWidth: 1
    implicitHeight: 1
    color: Theme.separator
    Accessible.role: Accessible.Separator
    Accessible.ignored: true // it parts for the eye what is told apart already
}
