// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Templates as T
import Pixpress

ViewTest {
    id: root

    name: "PixpressWindow"

    Component {
        id: component

        PixpressWindow {
            app: root.stage.app
        }
    }

    function opened() {
        const window = createTemporaryObject(component, root);
        window.requestActivate();
        tryCompare(window, "active", true);
        return window;
    }

    function test_window_hasItsSizeAndTitle() {
        const window = opened();
        compare(window.title, "Pixpress");
        compare(window.width, 920);
        compare(window.height, 620);
        compare(window.minimumWidth, 800);
        compare(window.minimumHeight, 550);
        verify(window.visible);
    }

    function test_menus_haveNoItemForASecondWindow() {
        const bar = opened().menuBar;
        const entries = Array.from({ length: bar.count }, (_, index) => {
            const menu = bar.menuAt(index);
            return menu.title + ": " + Array.from({ length: menu.count }, (_, item) => menu.itemAt(item).text).join(", ");
        });
        compare(entries, ["Pixpress: Settings…, Quit", "File: Add Files…"]);
    }

    function test_ctrlComma_opensTheSettings() {
        const window = opened();
        verify(!stage.app.appState.showSettings);
        keySequence("Ctrl+,");
        verify(stage.app.appState.showSettings);
        tryVerify(() => search(window.contentItem.Window.contentItem, "tabs") !== null);
        keyClick(Qt.Key_Escape);
        tryVerify(() => !stage.app.appState.showSettings);
    }

    function test_ctrlCommaWithoutAKey_isRememberedUntilThereIsOne() {
        stage.start("");
        const window = opened();
        keySequence("Ctrl+,");
        verify(stage.app.appState.showSettings);
        compare(search(window.contentItem.Window.contentItem, "tabs"), null);
        stage.app.appState.saveAPIKey("new");
        tryVerify(() => search(window.contentItem.Window.contentItem, "tabs") !== null);
    }

    function test_ctrlO_picksFilesOnceThereIsAKey() {
        stage.start("");
        const window = opened();
        stage.picked = [stage.file("a.png")];
        keySequence("Ctrl+O");
        compare(stage.batches.length, 0);
        stage.app.appState.saveAPIKey("new");
        keySequence("Ctrl+O");
        compare(stage.batches, [1]);
    }
}
