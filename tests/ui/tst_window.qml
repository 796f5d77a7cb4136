// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
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
        compare(entries, ["&Pixpress: Settings…, Quit", "&File: Add Files…"]);
    }

    /// The middle of parts of the window, and its corners.
    function test_drop_isTakenForCopyingEverywhere_data() {
        return [
            { tag: "menu bar", x: 500, y: 10 },
            { tag: "menu", x: 30, y: 14 },
            { tag: "toolbar", x: 460, y: 50 },
            { tag: "sidebar", x: 130, y: 300 },
            { tag: "drop zone", x: 600, y: 300 },
            { tag: "quota bar", x: 600, y: 605 },
            { tag: "first pixel", x: 0, y: 0 },
            { tag: "last pixel", x: 919, y: 619 }
        ];
    }

    function test_drop_isTakenForCopyingEverywhere(row) {
        stage.hold();
        const window = opened();
        drag.urls = [stage.file("a.png")];
        const enteredAt = [[row.x, row.y], [500, 10], [600, 300]];
        for (const [x, y] of enteredAt) {
            drag.enter(window, x, y);
            compare([drag.accepted, drag.action], [true, Qt.CopyAction], "entered at " + x + ", " + y);
            drag.move(window, row.x, row.y);
            compare([drag.accepted, drag.action], [true, Qt.CopyAction], "moved on from " + x + ", " + y);
            drag.leave(window);
        }
        drag.enter(window, 500, 10);
        drag.drop(window, row.x, row.y);
        compare([drag.accepted, drag.action], [true, Qt.CopyAction]);
        compare(stage.batches, [1]);
    }

    function test_menusOffline_nameTheAboutPage() {
        stage.startOffline();
        const menu = opened().menuBar.menuAt(0);
        compare(Array.from({ length: menu.count }, (_, item) => menu.itemAt(item).text), ["About Pixpress", "Quit"]);
        stage.picked = [stage.file("a.png")];
        keySequence("Ctrl+O");
        tryCompare(stage, "batches", [1]);
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

    function test_menus_openByTheirLetter_data() {
        return [{ tag: "Alt+P", index: 0 }, { tag: "Alt+F", index: 1 }];
    }

    function test_menus_openByTheirLetter(row) {
        const window = opened();
        compare(withRole(window.menuBar, Accessible.MenuItem).map(item => item.Accessible.name), ["Pixpress", "File"]);
        verify(texts(window.menuBar).startsWith("Pixpress\nFile"), texts(window.menuBar));
        keySequence(row.tag);
        tryVerify(() => window.menuBar.menuAt(row.index).opened);
        verify(!window.menuBar.menuAt(1 - row.index).opened);
        keyClick(Qt.Key_Escape);
        tryVerify(() => !window.menuBar.menuAt(row.index).visible);
    }

    function test_menuClosedByEscape_opensByTheNextClickAndNotByHovering() {
        const bar = opened().menuBar;
        const titles = withRole(bar, Accessible.MenuItem);
        const isOpen = index => bar.menuAt(index).visible;
        for (let i = 0; i < 3; ++i) {
            mouseMove(titles[1], 10, 10);
            mouseClick(titles[1], 10, 10);
            tryVerify(() => isOpen(1), 5000, "click " + i);
            keyClick(Qt.Key_Escape);
            tryVerify(() => !isOpen(1));
            verify(!titles[1].highlighted);
        }
        mouseMove(titles[0], 10, 10);
        mouseMove(titles[1], 12, 10);
        verify(!isOpen(0) && !isOpen(1));
    }

    function test_openMenu_followsThePointerAndClosesByItsTitle() {
        const bar = opened().menuBar;
        const titles = withRole(bar, Accessible.MenuItem);
        const isOpen = index => bar.menuAt(index).visible;
        mouseMove(titles[1], 10, 10);
        mouseClick(titles[1], 10, 10);
        tryVerify(() => isOpen(1));
        mouseMove(titles[0], 10, 10);
        tryVerify(() => isOpen(0) && !isOpen(1));
        mouseClick(titles[0], 10, 10);
        tryVerify(() => !isOpen(0));
        mouseClick(titles[0], 10, 10);
        tryVerify(() => isOpen(0));
        mouseClick(bar, 500, 300);
        tryVerify(() => !isOpen(0));
    }

    function test_menus_areOpenedAndChosenFromByAssistiveTechnology() {
        const window = opened();
        const bar = window.menuBar;
        verify(stage.act(withRole(bar, Accessible.MenuItem)[0], "Press"));
        tryVerify(() => bar.menuAt(0).opened);
        verify(stage.act(bar.menuAt(0).itemAt(0), "Press"));
        verify(stage.app.appState.showSettings);
        tryVerify(() => !bar.menuAt(0).visible);
    }

    function test_ctrlO_isWithoutEffectWhileTheSettingsAreOpen() {
        const window = opened();
        stage.picked = [stage.file("a.png")];
        keySequence("Ctrl+,");
        keySequence("Ctrl+O");
        keyClick(Qt.Key_Escape);
        tryVerify(() => search(window.contentItem.Window.contentItem, "tabs") === null);
        keySequence("Ctrl+O");
        tryCompare(stage, "batches", [1]);
    }

    function test_shortcuts_areWithoutEffectWhileAPanelIsOpen() {
        const window = opened();
        stage.picked = [stage.file("a.png")];
        let panels = 0;
        const press = () => {
            ++panels;
            keySequence("Ctrl+O");
            keySequence("Ctrl+,");
        };
        stage.panelOpened.connect(press);
        keySequence("Ctrl+O");
        tryCompare(stage, "batches", [1]);
        stage.panelOpened.disconnect(press);
        compare(panels, 1);
        verify(!stage.app.appState.showSettings);
        tryVerify(() => !stage.app.isPanelOpen);
        keySequence("Ctrl+,");
        verify(stage.app.appState.showSettings);
    }

    function test_ctrlCommaWhileTheSheetFades_opensItAnew() {
        const window = opened();
        const tabs = () => search(window.contentItem.Window.contentItem, "tabs");
        keySequence("Ctrl+,");
        tryVerify(() => tabs() !== null && tabs().parent.parent.opacity === 1);
        const first = tabs();
        tabs().currentIndex = 2;
        keyClick(Qt.Key_Escape);
        verify(tabs() !== null, "it fades");
        keySequence("Ctrl+,");
        verify(stage.app.appState.showSettings);
        tryVerify(() => tabs() !== null && tabs() !== first && tabs().parent.parent.opacity === 1);
        compare(tabs().currentIndex, 0);
        verify(stage.app.appState.showSettings);
    }

    function test_sheet_closesWhenTheStateSaysSo() {
        const window = opened();
        const tabs = () => search(window.contentItem.Window.contentItem, "tabs");
        keySequence("Ctrl+,");
        tryVerify(() => tabs() !== null && tabs().parent.parent.opacity === 1);
        stage.app.appState.showSettings = false;
        tryVerify(() => tabs() === null);
        verify(!stage.app.appState.showSettings);
    }

    function test_ctrlO_picksFilesOnceThereIsAKey() {
        stage.start("");
        const window = opened();
        stage.picked = [stage.file("a.png")];
        keySequence("Ctrl+O");
        compare(stage.batches.length, 0);
        stage.app.appState.saveAPIKey("new");
        keySequence("Ctrl+O");
        tryCompare(stage, "batches", [1]);
    }
}
