// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// A row of options that is made when it shows for the first time.
FormRow {
    id: root

    required property OptionsEditor options
    required property string view ///< The name of its content's file.

    function load() {
        if (visible)
            content.active = true;
    }

    onVisibleChanged: load()
    Component.onCompleted: load()

    LateView {
        id: content

        width: parent.width
        view: root.view
        initial: ({
            options: root.options
        })
        active: false
    }
}
