// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtTest
import Pixpress

/// What moves, where the desktop's user wants nothing to: it is where it ends, at once.
ViewTest {
    id: root

    name: "ReducedMotion"

    SignalSpy {
        id: moves
    }

    Component {
        id: component

        MainView {
            app: root.stage.app
            width: root.width
            height: root.height
        }
    }

    Component {
        id: indicatorComponent

        ActivityIndicator {}
    }

    /// How often a property changes while this is done, until it has a value.
    function changes(item, property: string, act, value): int {
        moves.signalName = property + "Changed";
        moves.target = item;
        moves.clear();
        act();
        tryCompare(item, property, value);
        const count = moves.count;
        moves.target = null;
        return count;
    }

    function motions_data() {
        return [{ tag: "usual", reducedMotion: false }, { tag: "reduced", reducedMotion: true }];
    }

    function test_drag_data() {
        return motions_data();
    }

    function test_drag(row) {
        stage.prefer(row);
        show(component);
        drag.urls = [stage.file("a.png")];
        const enter = () => drag.enter(root.Window.window, 400, 300);
        const leave = () => drag.leave(root.Window.window);
        compare(changes(find("badge"), "scale", enter, 1.15) === 1, row.reducedMotion);
        compare(changes(find("outline"), "color", leave, Theme.outline) === 1, row.reducedMotion);
    }

    function test_switch_data() {
        return motions_data();
    }

    function test_switch(row) {
        stage.prefer(row);
        show(component);
        const control = find("preserveCopyright");
        const flip = () => mouseClick(control);
        compare(changes(control.indicator, "position", flip, 1) === 1, row.reducedMotion);
        compare(changes(control.indicator, "trackColor", flip, Theme.switchTrack) === 1, row.reducedMotion);
    }

    function test_sheet_data() {
        return motions_data();
    }

    function test_sheet(row) {
        stage.prefer(row);
        show(component);
        stage.app.appState.showSettings = true;
        const sheet = found("tabs").parent.parent;
        if (row.reducedMotion)
            compare(sheet.opacity, 1);
        else
            tryCompare(sheet, "opacity", 1);
        stage.app.appState.showSettings = false;
        compare(find("tabs") === null, row.reducedMotion);
        tryVerify(() => find("tabs") === null);
    }

    /// Whether the view that the item is in, which is made piece by piece, is whole.
    function isLoaded(item): bool {
        let loader = item;
        while (loader && !(loader instanceof Loader))
            loader = loader.parent;
        return loader !== null && loader.status === Loader.Ready;
    }

    function test_list_data() {
        return motions_data();
    }

    function test_list(row) {
        stage.prefer(row);
        stage.hold();
        show(component);
        stage.app.handleDrop(Array.from({ length: 30 }, (_, index) => stage.file(index + ".png")));
        tryVerify(() => isLoaded(find("rows"))); // it can be found before, and not yet be moved
        const rows = find("rows");
        compare(rows.count, 30);
        rows.forceActiveFocus();
        const atEnd = () => rows.itemAtIndex(29) !== null && rows.atYEnd;
        rows.currentIndex = 29;
        compare(atEnd(), row.reducedMotion);
        tryVerify(atEnd);
    }

    function test_indicator_turnsSlowlyInsteadOfEvenly_data() {
        return motions_data();
    }

    function test_indicator_turnsSlowlyInsteadOfEvenly(row) {
        stage.prefer(row);
        const indicator = show(indicatorComponent);
        verify(indicator.isTurning);
        compare(indicator.stepDuration, row.reducedMotion ? 500 : 100);
    }
}
