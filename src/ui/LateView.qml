// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// A view that is not even read before it becomes active: what is not seen at the start must not
/// delay the window.
Loader {
    id: root

    required property string view ///< The name of its file.
    required property var initial ///< The properties that the view begins with, by name.

    Component.onCompleted: setSource(root.view + ".qml", root.initial)
}
