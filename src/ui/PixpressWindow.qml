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
    minimumWidth: 800
    minimumHeight: 550
    visible: true
    color: Theme.windowBackground
    font: Theme.body

    menuBar: MainMenu {
        app: root.app
    }

    MainView {
        anchors.fill: parent
        app: root.app
    }
}
