// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// The options of the size.
FormSection {
    id: root

    required property OptionsEditor options

    title: qsTr("Resize")

    FormRow {
        ToggleSwitch {
            objectName: "resizeEnabled"
            width: parent.width
            text: qsTr("Enable Resize")
            checked: root.options.resizeEnabled
            onToggled: root.options.resizeEnabled = checked
        }
    }
    LateRow {
        visible: root.options.resizeEnabled
        options: root.options
        view: "ResizeMethod"
    }
    LateRow {
        visible: root.options.resizeEnabled
        options: root.options
        view: "ResizeDimensions"
    }
}
