// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Pixpress

/// A choice of colours, and a field for any other.
T.Popup {
    id: root

    required property string label ///< What is coloured; for assistive technology.
    required property color value
    required property string hex
    required property OptionsEditor options ///< Judges what is typed.

    readonly property int columns: 8
    readonly property int rows: 5

    signal picked(color color)
    signal typed(string text)

    /// Greys in the first row, below it the hues from light to dark.
    function swatch(index: int): color {
        const column = index % columns;
        const row = Math.floor(index / columns);
        if (row === 0)
            return Qt.hsla(0, 0, 1 - column / (columns - 1), 1);
        return Qt.hsla(column / columns, 0.75, 1 - 0.18 * row, 1);
    }

    // The item around the content, to which assistive technology is led, has no other way in.
    Component.onCompleted: contentItem.parent.Accessible.name = label

    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    margins: 6
    padding: 10
    focus: true

    contentItem: ColumnLayout {
        spacing: 10

        Grid {
            columns: root.columns
            spacing: 4

            Repeater {
                model: root.columns * root.rows

                T.AbstractButton {
                    id: swatch

                    required property int index
                    readonly property int accessibleRole: Accessible.RadioButton
                    readonly property bool accessibleChecked: isCurrent
                    readonly property color color: root.swatch(index)
                    readonly property bool isCurrent: color.toString() === root.value.toString() // one may be of hues

                    implicitWidth: Theme.scaled(20)
                    implicitHeight: Theme.scaled(20)
                    focusPolicy: Qt.StrongFocus
                    Accessible.role: Accessible.RadioButton
                    Accessible.name: color.toString()
                    Accessible.checkable: true
                    Accessible.checked: isCurrent
                    Accessible.onPressAction: swatch.clicked()

                    onClicked: {
                        root.picked(color);
                        root.close();
                    }

                    background: Box {
                        radius: 4
                        color: swatch.color
                        borderWidth: swatch.isCurrent ? 2 : 1
                        borderColor: swatch.isCurrent ? Theme.blue : Theme.controlBorder

                        FocusRing {
                            visible: swatch.visualFocus
                            controlRadius: 4
                        }
                    }
                }
            }
        }

        TextEntry {
            id: hex

            objectName: "hex"
            label: qsTr("Colour as #rrggbb")
            text: root.hex
            isCode: true
            isRefused: !root.options.isColour(text)
            focus: true
            Layout.fillWidth: true
            Keys.onEscapePressed: event => {
                text = root.hex; // closing finishes the editing too
                event.accepted = false;
            }
            onEditingFinished: {
                if (!isRefused)
                    root.typed(text);
            }
            onAccepted: {
                if (!isRefused)
                    root.close();
            }
        }
        SymbolLabel {
            objectName: "refusedColour"
            visible: hex.isRefused
            symbol: "exclamationmark.triangle.fill"
            text: qsTr("Enter six hexadecimal digits")
            font: Theme.caption
            color: Theme.redText
            wrapMode: Text.Wrap
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Accessible.role: Accessible.Notification // read out when it shows
        }
    }
    background: Box {
        radius: 7
        color: Theme.menuBackground
        borderWidth: 1
        borderColor: Theme.controlBorder
    }
}
