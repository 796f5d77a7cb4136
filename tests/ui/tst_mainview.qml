// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtTest
import Pixpress

ViewTest {
    id: root

    name: "MainView"

    Component {
        id: component

        MainView {
            app: root.stage.app
            width: root.width
            height: root.height
        }
    }

    SignalSpy {
        id: panels

        target: root.stage
        signalName: "panelOpened"
    }

    function files(count: int) {
        return Array.from({ length: count }, (_, index) => stage.file("picture" + index + ".png"));
    }

    function test_withoutKey_showsOnboardingAlone() {
        stage.start("");
        const view = show(component);
        verify(texts(view).includes("Welcome to Pixpress"));
        for (const name of ["addFiles", "clearDone", "clearAll", "settings", "form", "browse", "bar"])
            compare(find(name), null, name);
        drag.urls = files(1);
        drag.enter(root.Window.window, 400, 300);
        verify(!drag.accepted);
        drag.drop(root.Window.window, 400, 300);
        compare(stage.batches.length, 0);
    }

    function test_offlineEdition_showsTheWorkingLayoutWithoutKeyAndQuota() {
        stage.startOffline();
        const view = show(component);
        compare(stage.storedKey(), "");
        verify(!stage.app.needsKey);
        verify(find("browse").visible && find("addFiles").visible && find("form").visible);
        verify(!find("bar").visible);
        const all = texts(view);
        for (const text of ["TinyPNG", "500 per", "/500", "left)", "Key", "Settings"])
            verify(!all.includes(text), text + " in " + all);
        const divider = withRole(view, Accessible.Separator).filter(item => item.width > 500 && placeOf(item, view).y > 100);
        compare(divider.length, 0, "and no line above what is not there");
        compare(find("settings").text, "About");
        compare(find("settings").symbol, "info.circle");
        compare(find("settings").help, "About Pixpress");
        drag.urls = files(2);
        drag.enter(root.Window.window, 400, 300);
        drag.drop(root.Window.window, 400, 300);
        compare(stage.batches, [2]);
    }

    function test_settingsAskedForTooEarly_openOnceTheKeyIsSaved() {
        stage.start("");
        show(component);
        stage.app.appState.showSettings = true;
        compare(find("tabs"), null);
        stage.app.appState.saveAPIKey("new");
        found("tabs");
        verify(stage.app.appState.showSettings);
        tryVerify(() => find("key") === null);
    }

    function test_emptyQueue_hasNoClearButtons() {
        const view = show(component);
        verify(!find("clearDone").visible);
        verify(!find("clearAll").visible);
        verify(find("addFiles").visible && find("addFiles").enabled);
        verify(find("browse").visible);
        compare(find("rows"), null);
    }

    function test_runningTasks_showClearDoneDisabledAndClearAllEnabled() {
        stage.hold();
        const view = show(component);
        stage.app.handleDrop(files(3));
        tryVerify(() => find("clearDone").visible);
        verify(!find("clearDone").enabled);
        verify(find("clearAll").visible && find("clearAll").enabled);
        tryVerify(() => find("browse") === null);
        tryVerify(() => find("rows") !== null && find("rows").visible);
    }

    function test_dropZone_staysUntilTheListShows() {
        stage.hold();
        show(component);
        const states = () => ["browse", "rows"].filter(name => find(name) !== null && find(name).visible).join();
        compare(states(), "browse");
        stage.app.handleDrop(files(1));
        compare(states(), "browse");
        const seen = new Set();
        tryVerify(() => {
            seen.add(states());
            return states() === "rows";
        });
        compare(Array.from(seen).filter(state => state !== "browse" && state !== "rows"), []);
        stage.app.clearAll();
        tryVerify(() => states() === "browse");
    }

    function test_clearDone_takesOutWhatHasEnded_data() {
        return [{ tag: "completed", status: 0 }, { tag: "failed", status: 500 }];
    }

    function test_clearDone_takesOutWhatHasEnded(row) {
        if (row.status !== 0)
            stage.failWith(row.status, "No.");
        const view = show(component);
        addAndFinish("a.png");
        tryVerify(() => find("clearDone").enabled);
        tryVerify(() => placeOf(find("clearDone"), view).x > 600);
        mouseClick(find("clearDone"));
        compare(stage.app.tasks.count, 0);
        found("browse");
        verify(!find("clearDone").visible);
    }

    function test_clearAll_bringsTheDropZoneBack() {
        const view = show(component);
        addAndFinish("a.png");
        addAndFinish("b.png");
        tryVerify(() => placeOf(find("clearAll"), view).x > 600);
        mouseClick(find("clearAll"));
        compare(stage.app.tasks.count, 0);
        found("browse");
    }

    function test_toolbar_standsInOrderAtItsEndWithHelp() {
        stage.hold();
        const view = show(component);
        stage.app.handleDrop(files(1));
        tryVerify(() => placeOf(find("clearAll"), view).x > placeOf(find("clearDone"), view).x);
        const buttons = ["addFiles", "clearDone", "clearAll", "settings"].map(name => find(name));
        compare(buttons.map(button => button.text).join(), "Add Files,Clear Done,Clear All,Settings");
        compare(buttons.map(button => button.symbol).join(), "plus,checkmark.circle,trash,gearshape");
        compare(buttons.map(button => button.Accessible.name).join(), "Add Files,Clear Done,Clear All,Settings");
        for (let i = 1; i < buttons.length; ++i)
            verify(placeOf(buttons[i], view).x >= placeOf(buttons[i - 1], view).right);
        compare(placeOf(buttons[3], view).right, 920 - 10);
        const helps = ["Add images to compress", "Clear completed tasks", "Clear all tasks", "Open settings"];
        verify(!buttons[1].enabled); // and still tells what it would do
        for (const index of [0, 1, 2, 3]) {
            mouseMove(buttons[index], 10, 10);
            tryVerify(() => texts(root.Window.contentItem).includes(helps[index]), 5000, helps[index]);
        }
        mouseMove(root, 400, 400);
        tryVerify(() => helps.every(help => !texts(root.Window.contentItem).includes(help)));
    }

    function test_help_isThatOfWhatShows() {
        show(component);
        mouseMove(find("sidebarToggle"), 10, 10);
        tryVerify(() => texts(root.Window.contentItem).includes("Hide Sidebar"));
        mouseMove(find("sidebarToggle"), 12, 12); // whoever counts as pointed at has been told twice
        verify(!find("clearDone").isPointedAt);
        mouseMove(root, 400, 400);
        tryVerify(() => !texts(root.Window.contentItem).includes("Hide Sidebar"));
    }

    function test_addFiles_opensThePanel() {
        show(component);
        stage.picked = files(2);
        mouseClick(find("addFiles"));
        tryCompare(stage, "batches", [2]);
    }

    function test_settingsButton_opensTheSheet() {
        show(component);
        mouseClick(find("settings"));
        verify(stage.app.appState.showSettings);
        found("tabs");
    }

    function test_drag_isTakenForCopyingAndShows() {
        const view = show(component);
        drag.urls = files(1);
        verify(!view.isDropTargeted);
        drag.enter(root.Window.window, 400, 300);
        verify(drag.accepted);
        compare(drag.action, Qt.CopyAction);
        verify(view.isDropTargeted);
        tryCompare(find("outline"), "color", Theme.blue);
        drag.leave(root.Window.window);
        verify(!view.isDropTargeted);
        tryCompare(find("badge"), "scale", 1);
    }

    function test_dragOfWebLinksAlone_isNotTaken() {
        const view = show(component);
        drag.urls = ["https://tinypng.com/a.png", "https://tinypng.com/b.png"];
        drag.enter(root.Window.window, 400, 300);
        verify(!drag.accepted);
        verify(!view.isDropTargeted);
        drag.leave(root.Window.window);
        drag.urls = ["https://tinypng.com/a.png", stage.file("b.png")];
        drag.enter(root.Window.window, 400, 300);
        verify(drag.accepted);
        verify(view.isDropTargeted);
        drag.leave(root.Window.window);
    }

    function test_dragOfWhatIsNotAdded_doesNotShow_data() {
        return [{ tag: "folder", url: "file:///tmp" }, { tag: "folder with a slash", url: "file:///tmp/" }, { tag: "foreign type", url: "file:///tmp/notes.txt" }];
    }

    function test_dragOfWhatIsNotAdded_doesNotShow(row) {
        const view = show(component);
        drag.urls = [row.url, "file:///tmp/other.gif"];
        drag.enter(root.Window.window, 400, 300);
        verify(drag.accepted);
        compare(drag.action, Qt.CopyAction);
        verify(!view.isDropTargeted);
        drag.leave(root.Window.window);
        drag.urls = [row.url, "file:///tmp/picture.png"];
        drag.enter(root.Window.window, 400, 300);
        verify(view.isDropTargeted, "with a picture among them");
        drag.leave(root.Window.window);
    }

    function test_panel_opensAfterTheHandlerThatAskedForIt() {
        show(component);
        panels.clear();
        find("browse").clicked(); // its panel may take the button away
        compare(panels.count, 0);
        tryCompare(panels, "count", 1);
    }

    function test_openPanel_keepsDropsAndOtherPanelsAway_data() {
        return [{ tag: "files", open: () => stage.app.openFilePicker() }, { tag: "folder", open: () => stage.app.options.chooseFolder() }];
    }

    function test_openPanel_keepsDropsAndOtherPanelsAway(row) {
        const view = show(component);
        const seen = [];
        const look = () => {
            seen.push(stage.app.isPanelOpen);
            drag.urls = files(1);
            drag.enter(root.Window.window, 400, 300);
            seen.push(drag.accepted);
            drag.drop(root.Window.window, 400, 300);
            seen.push(drag.accepted, stage.app.tasks.count);
            stage.app.appState.openFilePicker();
            stage.app.options.chooseFolder();
        };
        panels.clear();
        stage.picked = files(2);
        stage.pickedFolder = "file:///tmp";
        stage.panelOpened.connect(look);
        row.open();
        tryCompare(panels, "count", 1);
        tryVerify(() => !stage.app.isPanelOpen);
        stage.panelOpened.disconnect(look);
        compare(seen, [true, false, false, 0]);
        compare(stage.batches, row.tag === "files" ? [2] : []);
        compare(stage.app.options.folder, row.tag === "files" ? "" : "/tmp");
        drag.enter(root.Window.window, 400, 300);
        verify(drag.accepted, "and then one may drop again");
        drag.leave(root.Window.window);
    }

    function test_dragThatIsOverTheWindowWhenAPanelOpens_isNotTakenEither() {
        const view = show(component);
        drag.urls = files(1);
        drag.enter(root.Window.window, 400, 300);
        verify(view.isDropTargeted);
        const look = () => drag.drop(root.Window.window, 400, 300);
        stage.panelOpened.connect(look);
        stage.app.options.chooseFolder();
        stage.panelOpened.disconnect(look);
        compare(stage.batches.length, 0);
        drag.enter(root.Window.window, 400, 300);
        const refused = [];
        const move = () => {
            drag.move(root.Window.window, 410, 300);
            refused.push(drag.accepted);
        };
        stage.panelOpened.connect(move);
        stage.app.options.chooseFolder();
        stage.panelOpened.disconnect(move);
        compare(refused, [false]);
        drag.move(root.Window.window, 420, 300);
        verify(drag.accepted, "once the panel has closed");
        compare(drag.action, Qt.CopyAction);
        drag.leave(root.Window.window);
    }

    function test_dragWithoutFiles_isNotTaken() {
        const view = show(component);
        drag.urls = [];
        drag.text = "https://tinypng.com/a.png";
        drag.enter(root.Window.window, 400, 300);
        verify(!view.isDropTargeted);
        drag.text = "";
    }

    function test_drop_addsThePicturesInOneBatch() {
        show(component);
        drag.urls = [stage.file("photo.PNG"), stage.file("notes.txt"), stage.file("photo2.jpeg")];
        drag.enter(root.Window.window, 400, 300);
        drag.drop(root.Window.window, 400, 300);
        verify(drag.accepted);
        compare(drag.action, Qt.CopyAction);
        compare(stage.batches, [2]);
        compare(stage.app.tasks.count, 2);
    }

    function test_dropOfUnsupportedFiles_isTakenAndAddsNothing() {
        const view = show(component);
        drag.urls = [stage.file("notes.txt"), "file:///tmp", "https://tinypng.com/a.png"];
        drag.enter(root.Window.window, 400, 300);
        drag.drop(root.Window.window, 400, 300);
        verify(drag.accepted);
        compare(stage.batches.length, 0);
        verify(!view.isDropTargeted);
        verify(find("browse").visible);
    }

    function test_dropOntoTheList_addsToIt() {
        stage.hold();
        show(component);
        stage.app.handleDrop(files(1));
        drag.urls = [stage.file("more.webp")];
        drag.enter(root.Window.window, 400, 300);
        drag.drop(root.Window.window, 400, 300);
        compare(stage.batches, [1, 1]);
    }

    function test_quotaBar_isPaddedBelowADivider() {
        const view = show(component);
        const bar = find("bar").parent;
        const place = placeOf(bar, view);
        const detail = placeOf(bar.parent, view);
        compare(place.x, detail.x + 16);
        compare(place.right, detail.right - 16);
        compare(place.bottom, 620 - 10);
        const dividers = withRole(bar.parent, Accessible.Separator).map(divider => placeOf(divider, view).y);
        verify(dividers.includes(place.y - 11), dividers + " before " + place.y);
    }

    function test_sidebar_isAsWideAsItMayBe() {
        const view = show(component);
        const sidebar = find("form").parent;
        compare(sidebar.width, 260);
        const drag = (from, by) => mouseDrag(view, from, 300, by, 0, Qt.LeftButton, Qt.NoModifier, 0);
        drag(260, -120);
        compare(sidebar.width, 230);
        drag(230, 200);
        compare(sidebar.width, 300);
    }

    function test_sidebarButton_hidesAndShowsTheOptions() {
        const view = show(component);
        const sidebar = find("form").parent;
        const button = withRole(view, Accessible.Button).find(item => item.Accessible.name === "Hide Sidebar");
        mouseClick(button);
        verify(!sidebar.visible);
        compare(button.Accessible.name, "Show Sidebar");
        mouseClick(button);
        verify(sidebar.visible);
    }

    function test_everyControlTabReaches_isNamed() {
        stage.failWith(500, "No.");
        addAndFinish("a.png");
        show(component);
        find("addFiles").forceActiveFocus(Qt.TabFocusReason);
        const names = tabOrder();
        compare(names.filter(name => name === "").length, 0, names.join());
        for (const name of ["Add Files", "Clear Done", "Clear All", "Settings", "Enable Resize", "Convert Format", "Copyright", "Save to", "Hide Sidebar"])
            verify(names.includes(name), name + " in " + names);
        verify(names.some(name => name.startsWith("a.png, ")), "the list in " + names);
        verify(names.length < 25);
    }
}
