// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// A row of a form's box, with a hairline above it unless it is the first that shows.
Item {
    id: root

    default property alias content: holder.data

    width: parent?.width ?? 0
    implicitHeight: Math.max(Theme.rowHeight, holder.childrenRect.height + 14)

    Divider {
        x: 10
        width: parent.width - 20
        visible: root.y > 0
    }

    Item {
        id: holder

        x: 10
        y: Math.round((parent.height - childrenRect.height) / 2)
        width: parent.width - 20
        height: childrenRect.height
    }
}
