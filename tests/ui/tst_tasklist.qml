// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

ViewTest {
    id: root

    name: "TaskListView"

    Component {
        id: component

        TaskListView {
            app: root.stage.app
            width: root.width
            height: root.height
        }
    }

    function files(count: int, extension: string) {
        return Array.from({ length: count }, (_, index) => stage.file("picture" + index + (extension || ".png")));
    }

    /// Of the tasks; a row that waits to be used again is none.
    function rows(view) {
        const list = findChild(view, "rows");
        return Array.from({ length: list.count }, (_, index) => list.itemAtIndex(index)).filter(row => row !== null);
    }

    function dividers(view): int {
        return rows(view).filter(row => withRole(row, Accessible.Separator).length === 1).length;
    }

    function test_dividers_standBetweenRowsOnly_data() {
        return [{ tag: "one", rows: 1, dividers: 0 }, { tag: "three", rows: 3, dividers: 2 }];
    }

    function test_dividers_standBetweenRowsOnly(row) {
        stage.hold();
        stage.app.handleDrop(files(row.rows));
        const view = show(component);
        compare(rows(view).length, row.rows);
        compare(dividers(view), row.dividers);
    }

    function test_divider_ofTheLastRowGoesWhenItBecomesTheLast() {
        stage.failWith(500, "No.");
        addAndFinish("a.png");
        stage.hold();
        stage.app.handleDrop([stage.file("b.png")]);
        const view = show(component);
        compare(dividers(view), 1);
        stage.app.clearCompleted();
        tryVerify(() => rows(view).length === 1);
        tryVerify(() => dividers(view) === 0);
    }

    function test_bar_countsAndSumsUp() {
        stage.answerWith(2000000, 466000);
        stage.hold();
        stage.app.handleDrop(files(3));
        const view = show(component);
        tryCompare(stage, "waiting", 1);
        compare(findChild(view, "progress").text, "0/3 completed");
        verify(!findChild(view, "totalSaved").visible);
        verify(!texts(view).includes("·"));
        stage.releaseOne(); // the upload
        tryCompare(stage, "waiting", 1);
        stage.releaseOne(); // the output
        tryCompare(findChild(view, "progress"), "text", "1/3 completed");
        verify(findChild(view, "totalSaved").visible);
        verify(texts(view).startsWith("1/3 completed\n·\nTotal saved: 1.5 MB\n"), texts(view));
        tryCompare(stage, "waiting", 1); // of the next file
    }

    function test_bar_looksAsDrawn() {
        stage.answerWith(2000000, 466000);
        addAndFinish("a.png");
        const view = show(component);
        const progress = findChild(view, "progress");
        compare(progress.font, Theme.caption);
        compare(progress.color, Theme.secondary);
        compare(withText(view, "·").color, Theme.tertiary);
        compare(findChild(view, "totalSaved").font, Theme.captionMedium);
        compare(findChild(view, "totalSaved").color, Theme.greenText);
        compare(placeOf(progress, view).x, 16);
        const dot = placeOf(withText(view, "·"), view);
        compare(dot.x, placeOf(progress, view).right + 8);
        compare(placeOf(findChild(view, "totalSaved"), view).x, dot.right + 8);
        compare([findChild(view, "activity").width, findChild(view, "activity").height], [12, 12]);
        const bar = progress.parent;
        compare(placeOf(bar, view).y, 8);
        const divider = placeOf(withRole(view, Accessible.Separator)[0], view);
        compare(divider, Qt.rect(0, placeOf(bar, view).bottom + 8, 920, 1));
        compare(placeOf(findChild(view, "rows"), view).y, divider.bottom);
        compare(placeOf(rows(view)[0], view).y, divider.bottom + 8);
        compare(findChild(view, "rows").bottomMargin, 8);
    }

    function test_total_disappearsWhenNothingIsSavedInSum_data() {
        return [{ tag: "zero", second: 1600 }, { tag: "negative", second: 5000 }];
    }

    function test_total_disappearsWhenNothingIsSavedInSum(row) {
        const view = show(component);
        stage.answerWith(1000, 400);
        addAndFinish("a.png");
        verify(texts(view).includes("·\nTotal saved: 600 bytes"));
        stage.answerWith(1000, row.second);
        addAndFinish("b.png");
        verify(!texts(view).includes("Total saved"));
        verify(!texts(view).includes("·"));
        verify(texts(view).startsWith("2/2 completed\n"));
    }

    function test_completedRow_tellsWhatWasSaved_data() {
        return [
            { tag: "smaller", size: 380, savings: "-62%", saved: "saved 620 bytes", status: "→ 380 bytes" },
            { tag: "grown by 5 %", size: 1050, savings: "--5%", saved: "saved -50 bytes", status: "→ 1 KB" },
            { tag: "same size", size: 1000, savings: "-0%", saved: "saved Zero KB", status: "→ 1 KB" }
        ];
    }

    function test_completedRow_tellsWhatWasSaved(row) {
        stage.answerWith(1000, row.size);
        addAndFinish("a.png");
        const view = show(component);
        compare(findChild(view, "savings").text, row.savings);
        compare(findChild(view, "saved").text, row.saved);
        compare(texts(findChild(view, "status")), row.status);
    }

    function test_activity_showsWhileATaskRuns() {
        stage.hold();
        const view = show(component);
        const activity = findChild(view, "activity");
        verify(!activity.visible && !activity.isTurning);
        stage.app.handleDrop([stage.file("a.png")]);
        tryVerify(() => activity.visible && activity.isTurning);
        tryCompare(stage, "waiting", 1);
        stage.releaseOne();
        tryCompare(stage, "waiting", 1);
        verify(activity.visible); // fetching the output
        tryVerify(() => placeOf(activity, view).right === 920 - 16);
        stage.release();
        tryVerify(() => !activity.visible && !activity.isTurning);
    }

    function test_row_changesInPlaceAndKeepsItsView() {
        stage.hold();
        stage.app.handleDrop([stage.file("changing.png"), stage.file("b.png")]);
        const view = show(component);
        const first = rows(view)[0];
        tryVerify(() => texts(findChild(first, "status")) === "Compressing");
        compare(texts(findChild(rows(view)[1], "status")), "Queued");
        tryCompare(stage, "waiting", 1);
        stage.release();
        tryVerify(() => findChild(first, "savings")?.visible ?? false);
        compare(rows(view)[0], first);
        verify(first.summary.endsWith(", saved 600 bytes"), first.summary);
        first.reveal();
        compare(stage.revealed[0].toString(), stage.file("changing.png").toString().replace(".png", "-pixpress.png"));
        tryVerify(() => !stage.app.appState.compressionQueue.hasActiveTasks);
    }

    function test_retry_usesTheOptionsOfThatMoment() {
        stage.failWith(500, "Not <i>today</i>.");
        addAndFinish("a.png");
        const view = show(component);
        verify(texts(findChild(view, "status")).includes("Not <i>today</i>."));
        stage.answerWith(1000, 400);
        stage.app.options.convertEnabled = true;
        stage.app.options.convertFormat = 1;
        mouseClick(findChild(view, "retry"));
        tryVerify(() => findChild(view, "savings")?.visible ?? false);
        verify(stage.outputRequests.join().includes("image/jpeg"), stage.outputRequests.join());
    }

    function test_reveal_showsTheOutput() {
        addAndFinish("to be shown.png");
        const view = show(component);
        mouseClick(findChild(view, "reveal"));
        compare(stage.revealed.length, 1);
        compare(stage.revealed[0].toString(), stage.file("to be shown.png").toString().replace(".png", "-pixpress.png"));
    }

    function test_arrows_walkTheRowsAndReturnReveals() {
        addAndFinish("a.png");
        addAndFinish("b.png");
        addAndFinish("c.png");
        const view = show(component);
        const list = findChild(view, "rows");
        list.forceActiveFocus(Qt.TabFocusReason);
        compare(list.currentIndex, 0);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Down); // there is no further row
        compare(list.currentIndex, 2);
        keyClick(Qt.Key_Up);
        compare(list.currentIndex, 1);
        verify(rows(view)[1].isCurrent);
        keyClick(Qt.Key_Return);
        compare(stage.revealed.length, 1);
        compare(stage.revealed[0], rows(view)[1].outputURL);
    }

    function test_tab_reachesTheButtonOfTheCurrentRowOnly() {
        stage.failWith(500, "No.");
        addAndFinish("a.png");
        addAndFinish("b.png");
        const view = show(component);
        const list = findChild(view, "rows");
        list.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Tab);
        compare(root.Window.activeFocusItem, findChild(rows(view)[1], "retry"));
        stage.hold();
        keyClick(Qt.Key_Space);
        tryVerify(() => texts(findChild(rows(view)[1], "status")) === "Compressing");
    }

    function test_click_takesTheKeyboardToTheRow() {
        addAndFinish("a.png");
        addAndFinish("b.png");
        const view = show(component);
        mouseClick(rows(view)[1], 200, 20);
        compare(findChild(view, "rows").currentIndex, 1);
        verify(rows(view)[1].isCurrent);
    }

    function test_wheelWhileARowsMenuIsOpen_leavesTheMenuAtItsTask() {
        stage.failWith(500, "No.");
        stage.app.handleDrop(files(60));
        tryVerify(() => !stage.app.appState.compressionQueue.hasActiveTasks);
        const view = show(component);
        const list = findChild(view, "rows");
        const entries = () => withRole(root.Window.contentItem, Accessible.MenuItem);
        const chosen = rows(view)[3];
        mouseClick(chosen, 200, 20, Qt.RightButton);
        tryVerify(() => entries().length === 1);
        const before = list.contentY;
        for (let i = 0; i < 40; ++i)
            mouseWheel(view, 400, 500, 0, -240);
        compare(list.contentY, before);
        stage.hold();
        mouseClick(entries()[0]);
        tryVerify(() => chosen.taskState !== TaskModel.State.failed);
        compare(chosen.fileName, "picture3.png");
    }

    function test_longList_makesOnlyAScreenfulOfRows() {
        stage.hold();
        stage.app.handleDrop(files(300));
        const view = show(component);
        const list = findChild(view, "rows");
        compare(list.count, 300);
        verify(list.contentItem.children.length < 40, list.contentItem.children.length + " items");
        const bar = withRole(view, Accessible.ScrollBar);
        compare(bar.length, 1);
        list.positionViewAtEnd();
        tryVerify(() => rows(view).some(row => row.index === 299));
        verify(list.contentItem.children.length < 60, list.contentItem.children.length + " items");
    }

    function test_position_staysWhenARowChanges() {
        stage.hold();
        stage.app.handleDrop(files(60));
        const view = show(component);
        const list = findChild(view, "rows");
        list.contentY = 700;
        tryCompare(stage, "waiting", 1);
        stage.releaseOne();
        tryCompare(stage, "waiting", 1);
        stage.releaseOne();
        tryVerify(() => findChild(view, "progress").text.startsWith("1/60"));
        compare(list.contentY, 700);
    }

    function test_currentRow_hasARing() {
        const isRing = item => item.borderColor !== undefined && Qt.colorEqual(item.borderColor, Theme.focusRing);
        stage.hold();
        stage.app.handleDrop(files(3));
        const view = show(component);
        const ringsOf = item => shown(item).filter(isRing);
        compare(ringsOf(view).length, 0);
        view.takeFocus();
        compare(ringsOf(view).length, 0, "nobody has asked for it");
        keyClick(Qt.Key_Down);
        compare(ringsOf(view).length, 1);
        const row = rows(view)[1];
        compare(ringsOf(row).length, 1);
        const ring = ringsOf(row)[0];
        compare(ring.borderWidth, 3);
        const place = placeOf(ring, row);
        const thumbnail = placeOf(withRole(row, Accessible.Graphic)[0], row);
        verify(place.x + 3 <= thumbnail.x && place.y + 3 <= thumbnail.y, "it touches nothing of the row: " + place);
        verify(place.right - 3 >= row.width - 20, "nor at its end: " + place);
        verify(place.bottom <= placeOf(withRole(row, Accessible.Separator)[0], row).y);
        keyClick(Qt.Key_Up);
        compare(ringsOf(row).length, 0);
        compare(ringsOf(rows(view)[0]).length, 1);
    }

    function test_click_drawsNoRingUntilAKeyIsPressed_data() {
        return [
            { tag: "row", button: Qt.LeftButton, target: row => findChild(row, "fileName") },
            { tag: "retry button", button: Qt.LeftButton, target: row => findChild(row, "retry") }
        ];
    }

    function test_click_drawsNoRingUntilAKeyIsPressed(data) {
        const rings = view => shown(view).filter(item => item.borderColor !== undefined && Qt.colorEqual(item.borderColor, Theme.focusRing)).length;
        stage.failWith(500, "No.");
        addAndFinish("a.png");
        addAndFinish("b.png");
        const view = show(component);
        for (let i = 0; i < 2; ++i) { // the second time the list has the keyboard already
            mouseClick(data.target(rows(view)[0]));
            tryVerify(() => !stage.app.appState.compressionQueue.hasActiveTasks && findChild(rows(view)[0], "retry") !== null);
            verify(findChild(view, "rows").activeFocus);
            compare(rings(view), 0);
        }
        keyClick(Qt.Key_Down);
        compare(rings(view), 1);
        mouseClick(findChild(rows(view)[1], "fileName"));
        compare(rings(view), 0);
    }

    function test_thumbnail_staysWhenTheStatusChanges() {
        stage.hold();
        stage.app.handleDrop([stage.picture("a.png", 60, 60)]);
        const view = show(component);
        const thumbnail = () => withRole(rows(view)[0], Accessible.Graphic)[0];
        tryVerify(() => thumbnail().ready);
        const before = thumbnail();
        let changes = 0;
        before.readyChanged.connect(() => ++changes);
        tryCompare(stage, "waiting", 1);
        stage.release();
        tryVerify(() => findChild(rows(view)[0], "savings") !== null);
        compare(thumbnail(), before);
        verify(before.ready);
        compare(changes, 0);
    }

    function test_list_isNamed() {
        stage.hold();
        stage.app.handleDrop([stage.file("a.png")]);
        const view = show(component);
        compare(findChild(view, "rows").Accessible.role, Accessible.List);
        compare(findChild(view, "rows").Accessible.name, "Images");
    }
}
