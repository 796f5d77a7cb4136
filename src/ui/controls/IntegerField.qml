// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// A field for a whole number under its label; empty means that there is none. What is typed stays
/// as it is until the editing ends.
Column {
    id: root

    required property string label
    required property string digits ///< The number that is set.
    required property OptionsEditor options ///< Reads what is typed.
    readonly property bool isRefused: field.text.trim() !== "" && options.numberIn(field.text) === ""

    signal edited(string digits)

    function showNumber() {
        if (!isRefused)
            field.text = digits;
    }

    spacing: 3

    onDigitsChanged: {
        if (options.numberIn(field.text) !== digits) // set elsewhere
            field.text = digits;
    }
    Component.onCompleted: field.text = digits

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
        id: field

        width: parent.width
        label: root.label
        isRefused: root.isRefused
        inputMethodHints: Qt.ImhDigitsOnly
        onTextEdited: root.edited(root.options.numberIn(text))
        onEditingFinished: root.showNumber()
    }
}
