// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// Scrolls so far that the control that has the keyboard can be seen, when it has just got it or what
/// is above it has become longer.
QtObject {
    id: root

    required property Flickable flickable
    readonly property Item focused: flickable.Window.activeFocusItem
    readonly property real contentHeight: flickable.contentHeight

    onFocusedChanged: follow()
    onContentHeightChanged: follow()

    function follow() {
        for (let item = focused; item; item = item.parent) {
            if (item === flickable.contentItem) {
                reveal();
                return;
            }
        }
    }

    function reveal() {
        const margin = 16;
        const top = focused.mapToItem(flickable.contentItem, 0, 0).y - margin;
        const bottom = top + focused.height + 2 * margin;
        if (top < flickable.contentY)
            flickable.contentY = Math.max(0, top);
        else if (bottom > flickable.contentY + flickable.height)
            flickable.contentY = Math.min(bottom, flickable.contentHeight) - flickable.height;
    }
}
