// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtTest
import Pixpress

ViewTest {
    id: root

    name: "TaskRowView"

    Component {
        id: component

        TaskRowView {
            width: 600
            index: 0
            fileName: "a.png"
            sourceURL: ""
            originalSize: "2 MB"
            taskState: TaskModel.State.pending
            statusText: "Queued"
            statusSymbol: "clock"
            savings: ""
            summary: "a.png, in words"
            saved: ""
            outputURL: ""
            thumbnails: root.stage.app.thumbnails
            isLast: false
            isCurrent: false
        }
    }

    TextMetrics {
        id: metrics

        elide: Text.ElideMiddle
    }

    SignalSpy {
        id: retried

        signalName: "retry"
    }

    SignalSpy {
        id: revealed

        signalName: "reveal"
    }

    function created(properties) {
        const row = createTemporaryObject(component, root, properties);
        retried.target = row;
        revealed.target = row;
        retried.clear();
        revealed.clear();
        verify(waitForRendering(row));
        return row;
    }

    function completed(properties) {
        return created(Object.assign({
            taskState: TaskModel.State.completed,
            statusText: "→ 760 KB",
            statusSymbol: "",
            savings: "-62%",
            saved: "saved 1.2 MB"
        }, properties ?? {}));
    }

    function failed(properties) {
        return created(Object.assign({
            taskState: TaskModel.State.failed,
            statusText: "No.",
            statusSymbol: ""
        }, properties ?? {}));
    }

    function test_status_showsAsItShould_data() {
        const State = TaskModel.State;
        return [
            { tag: "Queued", state: State.pending, symbol: "clock", color: Theme.secondary, shown: "clock clock" },
            { tag: "Uploading", state: State.uploading, symbol: "arrow.up.circle", color: Theme.blueText, shown: "arrow.up.circle" },
            { tag: "Compressing", state: State.compressing, symbol: "gearshape.2", color: Theme.orangeText, shown: "gearshape.2" },
            { tag: "Downloading", state: State.downloading, symbol: "arrow.down.circle", color: Theme.blueText, shown: "arrow.down.circle" },
            { tag: "→ 400 bytes", state: State.completed, symbol: "", color: Theme.secondary, shown: "folder" },
            { tag: "No <b>way</b>.", state: State.failed, symbol: "", color: Theme.redText, shown: "" }
        ];
    }

    function test_status_showsAsItShould(data) {
        const row = created({ taskState: data.state, statusText: data.tag, statusSymbol: data.symbol });
        const status = findChild(row, "status");
        compare(texts(status), data.tag);
        compare(symbols(row), data.shown);
        compare(status.color, data.color);
        compare(status.font, Theme.caption);
        compare(withText(row, data.tag).textFormat, Text.PlainText);
        compare(withText(row, data.tag).lineCount, 1);
        compare(withText(row, "2 MB").font, Theme.caption);
        compare(withText(row, "2 MB").color, Theme.secondary);
        const isRunning = [TaskModel.State.uploading, TaskModel.State.compressing, TaskModel.State.downloading].includes(data.state);
        compare(withRole(row, Accessible.ProgressBar).length, isRunning ? 1 : 0);
        compare(!!findChild(row, "retry"), data.state === TaskModel.State.failed);
        compare(!!findChild(row, "reveal"), data.state === TaskModel.State.completed);
        compare(!!findChild(row, "savings"), data.state === TaskModel.State.completed);
    }

    function test_row_isSpacedAsDrawn() {
        const row = completed();
        const thumbnail = placeOf(withRole(row, Accessible.Graphic)[0], row);
        compare(thumbnail, Qt.rect(20, 6, 36, 36)); // 16 of the list and 4 of the row; 6 above
        const name = placeOf(findChild(row, "fileName"), row);
        compare(name.x, thumbnail.right + 12);
        compare(placeOf(withText(row, "2 MB"), row).y, name.bottom + 3);
        compare(placeOf(findChild(row, "status"), row).x, placeOf(withText(row, "2 MB"), row).right + 4);
        const reveal = placeOf(findChild(row, "reveal"), row);
        compare(reveal, Qt.rect(600 - 20 - 28, 10, 28, 28));
        compare(findChild(row, "reveal").background.radius, 6);
        const savings = placeOf(findChild(row, "savings"), row);
        const saved = placeOf(findChild(row, "saved"), row);
        compare(savings.right, reveal.x - 10);
        compare(saved.right, savings.right);
        compare(saved.y, savings.bottom + 2);
        compare(findChild(row, "savings").font, Theme.title3);
        compare(findChild(row, "savings").color, Theme.greenText);
        compare(findChild(row, "saved").font, Theme.caption2);
        compare(findChild(row, "saved").color, Theme.secondary);
        compare(findChild(row, "fileName").font, Theme.bodyMedium);
    }

    function test_texts_endTwentyFourPointsBeforeWhatIsAtTheRight_data() {
        return [
            { tag: "clock", create: () => created({}), find: row => shown(row).filter(item => item.name === "clock").pop() },
            { tag: "spinner", create: () => created({ taskState: TaskModel.State.compressing }), find: row => withRole(row, Accessible.ProgressBar)[0] },
            { tag: "retry", create: () => failed({}), find: row => findChild(row, "retry") },
            { tag: "savings", create: () => completed({ saved: "saved 999.9 MB" }), find: row => findChild(row, "saved") }
        ];
    }

    function test_texts_endTwentyFourPointsBeforeWhatIsAtTheRight(data) {
        const row = data.create();
        const right = placeOf(data.find(row), row);
        fuzzyCompare(placeOf(findChild(row, "fileName"), row).right, right.x - 24, 0.01);
        fuzzyCompare(placeOf(findChild(row, "status"), row).right, right.x - 24, 0.01);
    }

    function test_runningRow_hasASmallSpinner_data() {
        const State = TaskModel.State;
        return [{ tag: "uploading", state: State.uploading }, { tag: "compressing", state: State.compressing }, { tag: "downloading", state: State.downloading }];
    }

    function test_runningRow_hasASmallSpinner(data) {
        const spinner = withRole(created({ taskState: data.state }), Accessible.ProgressBar)[0];
        compare([spinner.width, spinner.height], [16, 16]);
        verify(spinner.isTurning);
    }

    function test_savings_areCentredInTheRow() {
        const row = completed();
        const percentage = placeOf(findChild(row, "savings"), row);
        const saved = placeOf(findChild(row, "saved"), row);
        fuzzyCompare((percentage.y + saved.bottom) / 2, 24, 0.5); // of a row of 48
        const reveal = placeOf(findChild(row, "reveal"), row);
        compare(reveal.y + reveal.height / 2, 24);
    }

    function test_runningRow_keepsFourPointsAtTheRightOfTheSpinner() {
        const row = created({ taskState: TaskModel.State.uploading, statusText: "Uploading" });
        compare(placeOf(withRole(row, Accessible.ProgressBar)[0], row).right, 600 - 20 - 4);
    }

    function test_divider_standsTwoPointsBelowUnlessTheRowIsLast() {
        const row = created({});
        compare(row.implicitHeight, 48 + 2 + 1 + 2);
        compare(placeOf(withRole(row, Accessible.Separator)[0], row), Qt.rect(16, 50, 568, 1));
        const last = created({ isLast: true });
        compare(last.implicitHeight, 48);
        compare(withRole(last, Accessible.Separator).length, 0);
    }

    function test_longName_isShortenedInItsMiddle() {
        const name = "a very long name of a picture that somebody took on a long journey by the sea and never shortened.jpeg";
        const row = completed({ fileName: name, width: 400 });
        const text = findChild(row, "fileName");
        compare(text.elide, Text.ElideMiddle);
        verify(text.truncated);
        compare(text.lineCount, 1);
        verify(placeOf(text, row).right <= placeOf(findChild(row, "savings"), row).x);
    }

    function test_longFailure_staysOnOneLineBeforeTheButton() {
        const row = failed({ statusText: "It did not work out. ".repeat(30) });
        const status = findChild(row, "status");
        verify(placeOf(status, row).right <= placeOf(findChild(row, "retry"), row).x);
        compare(row.implicitHeight, 53);
    }

    function test_longFailure_isToldWholeUnderThePointer() {
        const sentence = "It did not work out, and nobody knows why. ".repeat(8);
        const row = failed({ statusText: sentence });
        const status = findChild(row, "status");
        verify(status.truncated);
        mouseMove(status, 40, 5);
        const tip = () => shown(root.Window.contentItem).filter(item => item.text === sentence && item.wrapMode === Text.Wrap)[0];
        tryVerify(() => !!tip());
        compare(tip().truncated, false);
        verify(tip().lineCount > 1);
        verify(tip().contentWidth <= tip().width);
        verify(tip().contentHeight <= tip().height);
        mouseMove(root, 1, 600);
        tryVerify(() => !tip());
    }

    function test_shortFailure_needsNoTip() {
        const row = failed();
        mouseMove(findChild(row, "status"), 5, 5);
        compare(findChild(row, "status").truncated, false);
        compare(findChild(row, "wholeFailure").active, false);
    }

    function test_failureOfSeveralLines_staysOnOneLine() {
        const row = failed({ statusText: "It did not work out.\nWhy, nobody knows.\n" });
        compare(withText(row, row.statusText).lineCount, 1);
        compare(row.implicitHeight, 53);
    }

    function test_longName_keepsItsExtension_data() {
        return [{ tag: "in the smallest window", width: 800 - 300 }, { tag: "in the usual one", width: 920 - 260 }];
    }

    function test_longName_keepsItsExtension(data) {
        const row = completed({ fileName: "long".repeat(60) + ".jpeg", width: data.width });
        const text = findChild(row, "fileName");
        verify(text.truncated);
        metrics.font = text.font;
        metrics.elideWidth = text.width;
        metrics.text = text.text;
        verify(/^long.*….*long\.jpeg$/.test(metrics.elidedText), metrics.elidedText);
        verify(text.contentWidth <= text.width);
    }

    function test_retryButton_asksForARetry() {
        const row = failed();
        const button = findChild(row, "retry");
        compare(texts(button), "Retry");
        compare(button.height, Theme.smallControl);
        compare(button.Accessible.name, "Retry");
        mouseClick(button);
        compare(retried.count, 1);
        compare(revealed.count, 0);
    }

    function test_revealButton_asksToRevealAndTellsSoWhenHovered() {
        const row = completed();
        const button = findChild(row, "reveal");
        compare(button.Accessible.name, "Show in Finder");
        mouseMove(button, 14, 14);
        tryVerify(() => texts(root.Window.contentItem).includes("Show in Finder"));
        mouseClick(button);
        compare(revealed.count, 1);
        compare(retried.count, 0);
        mouseMove(root, 1, 600);
        tryVerify(() => !texts(root.Window.contentItem).includes("Show in Finder"));
    }

    function test_revealButton_showsAFolderOnARoundedGround() {
        const button = findChild(completed(), "reveal");
        compare(symbols(button), "folder");
        compare(shown(button).filter(item => item.name === "folder")[0].color, Theme.secondary);
        compare(button.background.color, Theme.quaternary);
    }

    function test_secondaryClick_offersWhatTheStatusAllows_data() {
        const State = TaskModel.State;
        return [
            { tag: "pending", state: State.pending, menu: "" },
            { tag: "uploading", state: State.uploading, menu: "" },
            { tag: "compressing", state: State.compressing, menu: "" },
            { tag: "downloading", state: State.downloading, menu: "" },
            { tag: "completed", state: State.completed, menu: "Show in Finder" },
            { tag: "failed", state: State.failed, menu: "Retry" }
        ];
    }

    function test_secondaryClick_offersWhatTheStatusAllows(data) {
        const row = created({ taskState: data.state });
        const entries = () => withRole(root.Window.contentItem, Accessible.MenuItem);
        mouseClick(row, 200, 20, Qt.RightButton);
        compare(entries().map(entry => entry.text).join(), data.menu);
        if (data.menu === "")
            return;
        mouseClick(entries()[0]);
        compare(revealed.count, data.state === TaskModel.State.completed ? 1 : 0);
        compare(retried.count, data.state === TaskModel.State.failed ? 1 : 0);
        tryVerify(() => entries().length === 0);
    }

    function test_key_actsOnTheRow_data() {
        return [{ tag: "Return", key: Qt.Key_Return }, { tag: "Enter", key: Qt.Key_Enter }, { tag: "Space", key: Qt.Key_Space }];
    }

    function test_key_actsOnTheRow(data) {
        completed().forceActiveFocus();
        keyClick(data.key);
        compare(revealed.count, 1);
        failed().forceActiveFocus();
        keyClick(data.key);
        compare(retried.count, 1);
        created({}).forceActiveFocus();
        keyClick(data.key);
        compare(retried.count + revealed.count, 0);
    }

    function test_menuKey_opensTheMenu() {
        failed().forceActiveFocus();
        keyClick(Qt.Key_Menu);
        const entries = () => withRole(root.Window.contentItem, Accessible.MenuItem);
        compare(entries().length, 1);
        keyClick(Qt.Key_Escape);
        tryVerify(() => entries().length === 0);
        compare(retried.count, 0);
    }

    function test_menuKey_opensTheMenuAtTheRow() {
        const row = failed();
        mouseMove(root, 500, 550); // away from it
        row.forceActiveFocus();
        keyClick(Qt.Key_Menu);
        const entries = () => withRole(root.Window.contentItem, Accessible.MenuItem);
        compare(entries().length, 1);
        tryVerify(() => placeOf(entries()[0], row).y < 70);
        verify(placeOf(entries()[0], row).y >= 40);
        verify(placeOf(entries()[0], row).x < 100);
        keyClick(Qt.Key_Escape);
        tryVerify(() => entries().length === 0);
    }

    function test_accessibleName_tellsTheWholeRow() {
        const row = completed();
        compare(row.Accessible.role, Accessible.ListItem);
        compare(row.Accessible.name, "a.png, in words");
    }
}
