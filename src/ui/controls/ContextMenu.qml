// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A menu, of the menu bar or of a secondary click.
T.Menu {
    id: root

    implicitWidth: Math.max(contentItem.implicitWidth + leftPadding + rightPadding, 150)
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    margins: 4
    padding: 5
    overlap: 1

    /// Below a place of an item, which is `leading` away from its leading edge.
    function openAt(item: Item, leading: real, y: real) {
        popup(item, mirrored ? item.width - leading - width : leading, y);
    }

    function openAtPointer() {
        popup();
        if (mirrored)
            x -= width;
    }

    Component.onCompleted: contentItem.parent.Accessible.name = title.replace("&", "")
    onOpened: Accessibility.moveTo(currentIndex < 0 ? contentItem.parent : itemAt(currentIndex))

    delegate: ContextMenuItem {}

    contentItem: ListView {
        implicitHeight: contentHeight
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < root.count; ++i)
                widest = Math.max(widest, root.itemAt(i).implicitWidth);
            return widest;
        }
        model: root.contentModel
        currentIndex: root.currentIndex
        interactive: false
    }
    background: Box {
        radius: 7
        color: Theme.menuBackground
        borderWidth: 1
        borderColor: Theme.controlBorder
    }
}
