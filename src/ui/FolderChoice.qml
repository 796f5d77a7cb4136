// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// The folder that results are written into.
RowLayout {
    id: root

    required property OptionsEditor options

    spacing: 6

    Symbol {
        name: "folder.fill"
        size: Math.round(Theme.captionSize * 1.4)
        color: Theme.blue
    }
    Text {
        objectName: "folder"
        text: root.options.folder || qsTr("No folder chosen")
        font: Theme.caption
        color: root.options.folder ? Theme.primary : Theme.secondary
        elide: root.options.folder ? Text.ElideMiddle : Text.ElideNone
        wrapMode: root.options.folder ? Text.NoWrap : Text.Wrap
        horizontalAlignment: Text.AlignLeft
        maximumLineCount: root.options.folder ? 1 : 3
        textFormat: Text.PlainText
        Layout.fillWidth: true
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    PushButton {
        objectName: "chooseFolder"
        text: root.options.folder ? qsTr("Change") : qsTr("Choose…")
        controlHeight: Theme.smallControl
        onClicked: root.options.chooseFolder()
    }
}
