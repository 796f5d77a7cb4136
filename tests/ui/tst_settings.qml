// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

ViewTest {
    id: root

    readonly property Item content: find("tabs") ? find("tabs").parent : null

    name: "SettingsView"

    Component {
        id: component

        MainView {
            app: root.stage.app
            width: root.width
            height: root.height
        }
    }

    /// Opens the sheet, on the tab of this index.
    function opened(tab) {
        const view = show(component);
        stage.app.appState.showSettings = true;
        found("tabs");
        tryVerify(() => sheet().parent.opacity === 1);
        select(tab ?? 0);
        return view;
    }

    function sheet(): Item {
        return find("tabs").parent;
    }

    function select(tab: int) {
        const names = ["API Key", "Quota", "About"];
        mouseClick(withText(sheet(), names[tab]));
        tryCompare(find("tabs"), "currentIndex", tab);
    }

    function test_size_isFixed() {
        opened();
        compare(sheet().parent.width, 480);
        compare(sheet().parent.height, 380);
        compare(placeOf(sheet().parent, root).x, (920 - 480) / 2);
    }

    function test_header_isPaddedWithDoneAtItsEnd() {
        opened();
        const panel = sheet().parent;
        compare(withText(panel, "Settings").font, Theme.title2);
        compare(placeOf(withText(panel, "Settings"), panel).x, 16);
        compare(placeOf(find("done"), panel).right, 480 - 16);
        compare(placeOf(find("done"), panel).y, 16);
        const divider = withRole(panel, Accessible.Separator)[0];
        compare(placeOf(divider, panel), Qt.rect(0, 16 + find("done").height + 16, 480, 1));
    }

    function test_keyTab_showsItsTexts() {
        opened(0);
        compare(texts(sheet()), ["Settings", "Done", "API Key", "Quota", "About", "TinyPNG API Key", "••••••", "Save Key", "Validate", "Get your free key (500 compressions/month) at", "tinypng.com/developers"].filter(text => text !== "••••••").join("\n"));
        compare(symbols(sheet()), "key chart.bar info.circle");
        compare(find("apiKey").placeholderText, "API Key");
        compare(find("apiKey").font, Theme.bodyMonospaced);
        compare(find("apiKey").echoMode, TextInput.Password);
        const text = withText(sheet(), "Get your free key (500 compressions/month) at");
        compare([text.font.pixelSize, text.font.weight, text.color.toString()], [10, Font.Normal, "#a0000000"]);
        const link = withText(sheet(), "tinypng.com/developers");
        compare([link.font.pixelSize, link.font.weight, link.color.toString()], [10, Font.Medium, "#005fcc"]);
        compare(placeOf(link, sheet()).x, placeOf(text, sheet()).right + 4);
    }

    function test_storedKey_fillsTheMaskedField() {
        opened(0);
        compare(find("apiKey").text, "stored");
        verify(!/[a-z]/.test(find("apiKey").displayText));
        verify(find("saveKey").enabled);
        verify(find("validate").enabled);
        verify(!find("message").visible);
        verify(!find("checking").visible);
    }

    function test_withoutStoredKey_theFieldIsEmptyAndBothButtonsAreDisabled() {
        stage.start("");
        stage.app.appState.saveAPIKey(""); // brings the working layout, and stores nothing
        opened(0);
        compare(stage.storedKey(), "");
        compare(find("apiKey").text, "");
        verify(!find("saveKey").enabled);
        verify(!find("validate").enabled);
    }

    function test_keyChangedDuringItsCheck_isNotTheOneThatIsSaved() {
        opened(0);
        stage.hold();
        find("apiKey").text = "checked";
        mouseClick(find("validate"));
        tryCompare(stage, "waiting", 1);
        find("apiKey").text = "not checked";
        stage.release();
        found("message");
        compare(stage.storedKey(), "checked");
    }

    function test_keySavedDuringACheck_isNotUndoneByIt_data() {
        return [{ tag: "good", accepted: "checked" }, { tag: "bad", accepted: "other" }];
    }

    function test_keySavedDuringACheck_isNotUndoneByIt(row) {
        stage.acceptOnly(row.accepted);
        opened(0);
        stage.hold();
        find("apiKey").text = "checked";
        mouseClick(find("validate"));
        tryCompare(stage, "waiting", 1);
        find("apiKey").text = "saved";
        mouseClick(find("saveKey"));
        stage.release();
        tryVerify(() => find("validate").enabled);
        compare(stage.storedKey(), "saved");
        compare(texts(find("message")), "Key saved successfully");
        stage.acceptOnly("saved");
        mouseClick(find("validate"));
        tryVerify(() => texts(find("message")) === "API key is valid");
    }

    function test_message_endsWhereTheRowDoes_data() {
        return [{ tag: "short", message: "" }, { tag: "long", message: "broken" }];
    }

    function test_message_endsWhereTheRowDoes(row) {
        if (row.message !== "")
            stage.breakConnections();
        opened(0);
        mouseClick(find(row.message === "" ? "saveKey" : "validate"));
        const message = found("message");
        tryVerify(() => texts(message) !== "" && placeOf(message, sheet()).right === 480 - 16 - 10);
        verify(message.width <= message.implicitWidth);
        verify(placeOf(message, sheet()).x >= placeOf(find("validate"), sheet()).right + 8);
        verify(!message.truncated);
    }

    function test_pastedLineBreaks_areTakenOutOfTheKey_data() {
        return [
            { tag: "at the end", pasted: "secret\n", kept: "secret" },
            { tag: "of DOS", pasted: "secret\r\n", kept: "secret" },
            { tag: "in the middle", pasted: "sec\nret", kept: "secret" },
            { tag: "others", pasted: "\u2028sec\u0085ret\u2029", kept: "secret" },
            { tag: "blanks stay", pasted: " secret ", kept: " secret " }
        ];
    }

    function test_pastedLineBreaks_areTakenOutOfTheKey(row) {
        opened(0);
        const field = find("apiKey");
        field.forceActiveFocus();
        stage.copy(row.pasted);
        field.selectAll();
        keySequence(StandardKey.Paste);
        compare(field.text, row.kept);
        compare(field.cursorPosition, row.kept.length);
        mouseClick(find("saveKey"));
        compare(stage.storedKey(), row.kept);
    }

    function test_emptyField_disablesBothButtons() {
        opened(0);
        find("apiKey").forceActiveFocus();
        find("apiKey").selectAll();
        keyClick(Qt.Key_Backspace);
        verify(!find("saveKey").enabled);
        verify(!find("validate").enabled);
        type("x");
        verify(find("saveKey").enabled);
        verify(find("validate").enabled);
    }

    function test_saveKey_storesItUncheckedAndAsItIs() {
        opened(0);
        find("apiKey").text = " new ";
        mouseClick(find("saveKey"));
        compare(stage.storedKey(), " new ");
        compare(stage.keys.length, 0);
        compare(texts(find("message")), "Key saved successfully");
        compare(symbols(find("message")), "checkmark.circle.fill");
        compare(find("message").color, Theme.greenText);
        compare(find("message").font, Theme.caption);
    }

    function test_validatingAGoodKey_savesIt() {
        stage.acceptOnly("good");
        opened(0);
        find("apiKey").text = "good";
        mouseClick(find("validate"));
        compare(texts(found("message")), "API key is valid");
        compare(symbols(find("message")), "checkmark.circle.fill");
        compare(find("message").color, Theme.greenText);
        compare(stage.storedKey(), "good");
        compare(stage.keys, ["good"]);
    }

    function test_validatingABadKey_leavesTheStoredOne() {
        stage.acceptOnly("good");
        opened(0);
        find("apiKey").text = "bad";
        mouseClick(find("validate"));
        compare(texts(found("message")), "Invalid API key");
        compare(symbols(find("message")), "xmark.circle.fill");
        compare(find("message").color, Theme.redText);
        compare(stage.storedKey(), "stored");
    }

    function test_brokenConnection_isToldAndLeavesTheStoredKey() {
        stage.breakConnections();
        opened(0);
        find("apiKey").text = "other";
        mouseClick(find("validate"));
        verify(/^Validation failed: .+/.test(texts(found("message"))), texts(find("message")));
        compare(symbols(find("message")), "xmark.circle.fill");
        compare(stage.storedKey(), "stored");
        verify(find("validate").enabled);
    }

    function test_runningCheck_showsTheSpinnerWithoutTheOldMessage() {
        opened(0);
        mouseClick(find("saveKey"));
        verify(find("message").visible);
        stage.hold();
        mouseClick(find("validate"));
        verify(!find("validate").enabled);
        verify(find("saveKey").enabled);
        verify(find("checking").visible);
        verify(!find("message").visible);
        tryCompare(stage, "waiting", 1);
        stage.release();
        compare(texts(found("message")), "API key is valid");
        verify(!find("checking").visible);
        verify(find("validate").enabled);
    }

    function test_closingWhileACheckRuns_stillSavesAGoodKey() {
        opened(0);
        stage.hold();
        find("apiKey").text = "later";
        mouseClick(find("validate"));
        tryCompare(stage, "waiting", 1);
        keyClick(Qt.Key_Escape);
        tryVerify(() => find("tabs") === null);
        stage.release();
        tryVerify(() => stage.storedKey() === "later");
    }

    function test_reopened_isFreshAgain() {
        opened(0);
        find("apiKey").text = "typed";
        stage.acceptOnly("good");
        mouseClick(find("validate"));
        found("message");
        keyClick(Qt.Key_Escape);
        tryVerify(() => find("tabs") === null);
        stage.app.appState.showSettings = true;
        compare(found("apiKey").text, "stored");
        verify(!find("message").visible);
    }

    function test_links_openTheirPages() {
        opened(0);
        mouseClick(withText(sheet(), "tinypng.com/developers"));
        compare(stage.opened[0].toString(), "https://tinypng.com/developers");
        select(2);
        mouseClick(withText(sheet(), About.authorName));
        compare(stage.opened[1], About.authorPage);
    }

    function test_quotaTab_showsItsRows() {
        stage.setCount(123);
        stage.app.appState.quotaTracker.monthYear = "2025-03";
        opened(1);
        compare(texts(sheet()), ["Settings", "Done", "API Key", "Quota", "About", "Monthly Usage — 2025-03", "Compressions Used", "123", "Monthly Limit", "500", "Remaining", "377", "123/500", "(377 left)", "2025-03", "Reset Local Counter", "This only resets the local display. The actual count is tracked by TinyPNG's servers and synced on next compression."].join("\n"));
        compare(search(find("used"), "value").font, Theme.bodyMonospaced);
    }

    function test_quotaTab_hasRoomForAllOfItsRows() {
        opened(1);
        const help = withText(sheet(), "This only resets the local display. The actual count is tracked by TinyPNG's servers and synced on next compression.");
        verify(!help.truncated);
        compare(["used", "limit", "remainingRow"].map(name => find(name).height), [36, 36, 36]);
        const bottom = placeOf(help, sheet()).bottom + 7; // of the box around it
        verify(bottom <= 380 - 16, bottom);
        compare(sheet().height, 380);
    }

    function test_newMonth_showsWithACountOfZero() {
        stage.setCount(123);
        stage.today = new Date(2031, 1, 3, 12);
        opened(1);
        mouseClick(find("reset"));
        verify(texts(sheet()).includes("Monthly Usage — 2031-02"));
        verify(texts(sheet()).endsWith("synced on next compression."));
        verify(texts(sheet()).includes("0/500\n(500 left)\n2031-02"), texts(sheet()));
    }

    function test_remaining_turnsRedBelowFifty_data() {
        return [
            { tag: "0", left: "500", color: Theme.greenText },
            { tag: "450", left: "50", color: Theme.greenText },
            { tag: "451", left: "49", color: Theme.redText },
            { tag: "500", left: "0", color: Theme.redText },
            { tag: "3000000000", left: "0", color: Theme.redText },
            { tag: "9007199254740990", left: "0", color: Theme.redText },
            { tag: "510", left: "0", color: Theme.redText }
        ];
    }

    function test_remaining_turnsRedBelowFifty(row) {
        stage.setCount(Number(row.tag));
        opened(1);
        compare(search(find("remainingRow"), "value").text, row.left);
        compare(search(find("remainingRow"), "value").color, row.color);
        compare(search(find("used"), "value").text, row.tag);
        compare(search(find("used"), "value").color, Theme.primary);
    }

    function test_reset_setsTheCountToZeroOfThisMonth() {
        const tracker = stage.app.appState.quotaTracker;
        const month = tracker.monthYear;
        stage.setCount(123);
        tracker.monthYear = "2001-01";
        opened(1);
        mouseClick(find("reset"));
        compare(tracker.currentCount, 0);
        compare(tracker.monthYear, month);
        compare(search(find("used"), "value").text, "0");
        verify(texts(sheet()).includes("Monthly Usage — " + month));
    }

    function test_aboutTab_showsTheProgram() {
        opened(2);
        compare(texts(sheet()).replace(/<[^>]*>/g, ""), ["Settings", "Done", "API Key", "Quota", "About", "Pixpress", "Version 1.0.2", "Image compression powered by TinyPNG API", "Built with ❤️ by", "The Pixpress authors"].join("\n"));
        verify(symbols(sheet()).endsWith("arrow.down.right.and.arrow.up.left"));
        compare(withText(sheet(), "Pixpress").font, Theme.title);
        compare(withText(sheet(), "Version 1.0.2").font, Theme.caption);
        compare(withText(sheet(), "Image compression powered by TinyPNG API").font, Theme.subheadline);
        const symbol = shown(sheet()).filter(item => item.name === "arrow.down.right.and.arrow.up.left")[0];
        compare([symbol.size, symbol.color.toString()], [54, "#007aff"]); // of a font of 48
        const credits = shown(sheet()).filter(item => item.credits !== undefined)[0];
        compare([credits.font.pixelSize, credits.font.weight, credits.color.toString()], [11, Font.Normal, "#d9000000"]);
        const author = withText(sheet(), "The Pixpress authors");
        compare([author.font.pixelSize, author.font.weight, author.color.toString()], [11, Font.Medium, "#005fcc"]);
        compare(placeOf(author, sheet()).x, placeOf(credits, sheet()).right + 4);
        const version = placeOf(withText(sheet(), "Version 1.0.2"), sheet());
        compare(version.y, placeOf(withText(sheet(), "Pixpress"), sheet()).bottom + 16);
        compare(version.x + version.width / 2, 240);
        const divider = placeOf(withRole(sheet(), Accessible.Separator)[1], sheet());
        compare(divider.width, 180);
        compare(divider.y, placeOf(withText(sheet(), "Image compression powered by TinyPNG API"), sheet()).bottom + 16 + 4);
    }

    function test_offlineEdition_hasTheAboutPageOnly() {
        stage.startOffline();
        show(component);
        stage.app.appState.showSettings = true;
        found("done");
        tryVerify(() => find("done").parent.parent.parent.opacity === 1);
        compare(find("apiKey"), null);
        compare(find("reset"), null);
        verify(!find("tabs").visible);
        const page = find("done").parent.parent;
        compare(texts(page).replace(/<[^>]*>/g, ""), ["About", "Done", "Pixpress", "Version 1.0.2", "Compresses on this computer: your pictures never leave it", "Built with ❤️ by", "The Pixpress authors"].join("\n"));
        mouseClick(find("done"));
        tryVerify(() => find("done") === null);
    }

    function test_closing_isByReturnEscapeAndDone_data() {
        return [
            { tag: "Return", act: () => keyClick(Qt.Key_Return) },
            { tag: "Enter", act: () => keyClick(Qt.Key_Enter) },
            { tag: "Escape", act: () => keyClick(Qt.Key_Escape) },
            { tag: "Done", act: () => mouseClick(find("done")) }
        ];
    }

    function test_closing_isByReturnEscapeAndDone(row) {
        opened();
        row.act();
        tryVerify(() => !stage.app.appState.showSettings);
        tryVerify(() => find("tabs") === null);
    }

    function test_returnInTheField_closesTheSheet() {
        opened(0);
        find("apiKey").forceActiveFocus();
        keyClick(Qt.Key_Return);
        tryVerify(() => !stage.app.appState.showSettings);
    }

    function test_clickBesideTheSheet_leavesItOpen() {
        opened();
        mouseClick(root, 20, 300);
        verify(stage.app.appState.showSettings);
        verify(find("tabs").visible);
    }

    function test_tab_staysInTheSheet() {
        opened(0);
        find("done").forceActiveFocus(Qt.TabFocusReason);
        const names = tabOrder();
        for (const name of ["API Key", "Save Key", "Validate", "tinypng.com/developers", "Done"])
            verify(names.includes(name), name + " in " + names);
        verify(!names.includes("Add Files") && !names.includes("Enable Resize"), names.join());
    }

    function test_tabAndSpace_changeTheTab() {
        opened(0);
        const tabs = withRole(sheet(), Accessible.PageTab);
        compare(tabs.map(tab => tab.Accessible.name), ["API Key", "Quota", "About"]);
        tabs[0].forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Space);
        compare(find("tabs").currentIndex, 1);
    }

    function test_arrows_changeTheTab() {
        opened(0);
        const tabs = withRole(sheet(), Accessible.PageTab);
        tabs[0].forceActiveFocus(Qt.TabFocusReason);
        const pressed = key => {
            keyClick(key);
            compare(root.Window.activeFocusItem, tabs[find("tabs").currentIndex]);
            return find("tabs").currentIndex;
        };
        const keys = [Qt.Key_Right, Qt.Key_Right, Qt.Key_Right, Qt.Key_Left, Qt.Key_Left, Qt.Key_Left];
        compare(keys.map(pressed), [1, 2, 2, 1, 0, 0]);
    }
}
