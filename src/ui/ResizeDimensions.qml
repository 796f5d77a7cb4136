// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// The sizes to resize to.
Column {
    id: root

    required property OptionsEditor options

    spacing: 8

    RowLayout {
        width: parent.width
        spacing: 8

        IntegerField {
            id: widthField

            objectName: "resizeWidth"
            label: qsTr("Width")
            options: root.options
            digits: root.options.width
            onEdited: digits => root.options.width = digits
            Layout.fillWidth: true
            Layout.preferredWidth: 1 // equal shares
        }
        Text {
            objectName: "or"
            visible: root.options.isScale
            text: qsTr("or")
            font: Theme.caption
            color: Theme.tertiary
            textFormat: Text.PlainText
            Layout.alignment: Qt.AlignBottom
            Layout.bottomMargin: 6
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        IntegerField {
            id: heightField

            objectName: "resizeHeight"
            label: qsTr("Height")
            options: root.options
            digits: root.options.height
            onEdited: digits => root.options.height = digits
            Layout.fillWidth: true
            Layout.preferredWidth: 1
        }
    }
    SymbolLabel {
        objectName: "refusedSize"
        width: parent.width
        visible: widthField.isRefused || heightField.isRefused
        symbol: "exclamationmark.triangle.fill"
        text: qsTr("Enter a whole number of pixels")
        font: Theme.caption
        color: Theme.redText
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Notification // read out when it shows
    }
    SymbolLabel {
        objectName: "dimensionHint"
        width: parent.width
        visible: root.options.hasOneDimension
        symbol: "info.circle"
        text: qsTr("Only one dimension set — will scale proportionally")
        font: Theme.caption
        color: Theme.orangeText
        wrapMode: Text.Wrap
    }
}
