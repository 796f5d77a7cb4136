// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// The one window.
T.ApplicationWindow {
    id: root

    required property PixpressApp app

    title: "Pixpress"
    width: 920
    height: 620
    // Of larger text it holds as much at its size, but not at a smaller one.
    minimumWidth: 800 + 120 * (Appearance.textScale - 1)
    minimumHeight: 550 + 70 * (Appearance.textScale - 1)
    visible: true
    color: Theme.windowBackground
    font: Theme.body

    // For the dialogs that Qt draws; everything else takes its colours from Theme.
    palette {
        window: Theme.windowBackground
        windowText: Theme.primary
        base: Theme.contentBackground
        text: Theme.primary
        placeholderText: Theme.secondary
        button: Theme.controlFill
        buttonText: Theme.primary
        light: Theme.fieldFill
        highlight: Theme.accentFill
        highlightedText: Theme.onAccent
    }

    // In languages that are written from right to left; inherited by what pops up too.
    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true

    menuBar: MainMenu {
        app: root.app
    }

    MainView {
        anchors.fill: parent
        app: root.app
    }
}
