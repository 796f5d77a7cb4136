// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// The window's content: the onboarding while a key is needed, then the working layout.
Item {
    id: root

    required property PixpressApp app
    readonly property bool isDropTargeted: working.item?.isDropTargeted ?? false

    LateView {
        anchors.fill: parent
        view: "OnboardingView"
        initial: ({
            app: root.app
        })
        active: root.app.needsKey
    }

    LateView {
        id: working

        anchors.fill: parent
        view: "WorkingView"
        initial: ({
            app: root.app
        })
        active: !root.app.needsKey
    }
}
