// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// A field for a whole number under its label; empty means that there is none.
Column {
    id: root

    required property string label
    required property string digits

    signal edited(string digits)

    spacing: 3

    Text {
        width: parent.width
        text: root.label
        font: Theme.caption
        color: Theme.secondary
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    TextEntry {
        width: parent.width
        label: root.label
        text: root.digits
        inputMethodHints: Qt.ImhDigitsOnly
        validator: RegularExpressionValidator {
            regularExpression: /[0-9]{0,9}/
        }
        onTextEdited: root.edited(text)
    }
}
