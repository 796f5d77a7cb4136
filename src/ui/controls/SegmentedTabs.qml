// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// The tabs of a panel, as segments of one control.
T.TabBar {
    id: root

    property list<TabEntry> entries

    readonly property real widestTab: {
        let widest = Theme.scaled(110);
        for (let i = 0; i < count; ++i)
            widest = Math.max(widest, itemAt(i)?.implicitWidth ?? 0);
        return widest;
    }

    /// Chooses a neighbour, and takes the keyboard there.
    function step(by: int) {
        currentIndex = Math.max(0, Math.min(count - 1, currentIndex + by));
        currentItem.forceActiveFocus(Qt.TabFocusReason);
    }

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: Theme.regularControl + 4
    padding: 2
    spacing: 2
    contentWidth: count * widestTab
    contentHeight: Theme.regularControl

    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Tabs")

    Keys.onLeftPressed: step(mirrored ? 1 : -1)
    Keys.onRightPressed: step(mirrored ? -1 : 1)

    background: Box {
        radius: Theme.controlRadius + 2
        color: Theme.quaternary
    }
    contentItem: ListView {
        implicitHeight: root.contentHeight
        model: root.contentModel
        currentIndex: root.currentIndex
        spacing: root.spacing
        orientation: ListView.Horizontal
        interactive: false
    }

    Repeater {
        model: root.entries

        T.TabButton {
            id: tab

            required property TabEntry modelData

            width: (root.availableWidth - root.spacing * (root.count - 1)) / root.count
            height: Theme.regularControl
            focusPolicy: Qt.StrongFocus
            text: modelData.text
            Accessible.role: Accessible.PageTab
            Accessible.name: text
            Accessible.selectable: true
            Accessible.selected: checked
            Accessible.onPressAction: {
                forceActiveFocus(Qt.OtherFocusReason); // what had it on the other page goes
                checked = true;
            }

            implicitWidth: label.implicitWidth + 16

            contentItem: Item {
                SymbolLabel {
                    id: label

                    anchors.centerIn: parent
                    symbol: tab.modelData.symbol
                    text: tab.text
                    font: Theme.bodyMedium
                    spacing: 6
                    Accessible.ignored: true
                }
            }
            background: Box {
                radius: Theme.controlRadius
                color: tab.checked ? Theme.controlFill : "transparent"
                borderWidth: tab.checked ? 1 : 0
                borderColor: Theme.controlBorder

                FocusRing {
                    visible: tab.visualFocus
                }
            }
        }
    }
}
