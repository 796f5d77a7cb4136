// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

ViewTest {
    id: root

    readonly property string folderButton: "chooseFolder"
    readonly property string caption: "Used to fill transparency (JPEG/AVIF don't support alpha)"
    readonly property string hint: "Only one dimension set — will scale proportionally"

    name: "CompressionOptionsView"

    Component {
        id: component

        CompressionOptionsView {
            options: root.stage.app.options
            width: 260
            height: 900
        }
    }

    function options() {
        return stage.app.options;
    }

    /// Opens the list of a picker and clicks the entry.
    function pick(view, name: string, entry: string) {
        const picker = withRole(findChild(view, name), Accessible.ComboBox)[0];
        mouseClick(picker);
        const entries = () => withRole(root.Window.contentItem, Accessible.ListItem);
        tryVerify(() => entries().some(item => item.text === entry));
        mouseClick(entries().find(item => item.text === entry));
        tryVerify(() => entries().length === 0);
    }

    function entry(view, name: string): Item {
        return withRole(findChild(view, name), Accessible.EditableText)[0];
    }

    /// Types into a field what it is to hold.
    function fill(view, name: string, digits: string) {
        const field = entry(view, name);
        field.forceActiveFocus(Qt.TabFocusReason);
        field.selectAll();
        keyClick(Qt.Key_Delete);
        type(digits);
    }

    function test_allClosed_showsTheAlwaysShown() {
        compare(texts(show(component)), ["Resize", "Enable Resize", "Output Format", "Convert Format", "Preserve Metadata", "Copyright", "Creation Date", "GPS Location", "Output", "Save to", "Save Alongside Original", "Saves a copy with a \"-pixpress\" suffix next to the original"].join("\n"));
    }

    function test_allOpen_showsAll() {
        const view = show(component);
        options().resizeEnabled = true;
        options().resizeMode = 0;
        options().width = "100";
        options().convertEnabled = true;
        options().convertFormat = 1;
        options().destination = 2;
        compare(texts(view), ["Resize", "Enable Resize", "Method", "Scale", "Scales the image proportionally. Provide either a target width or height, not both.", "Width", "or", "Height", hint, "Output Format", "Convert Format", "Convert to", "JPEG", "Background", caption, "Preserve Metadata", "Copyright", "Creation Date", "GPS Location", "Output", "Save to", "Save to Folder", "Saves all compressed images to a chosen folder", "No folder chosen", "Choose…"].join("\n"));
        compare(withText(view, options().resizeModeDescription).font, Theme.caption);
        compare(withText(view, options().resizeModeDescription).color, Theme.secondary);
        compare(withText(view, "or").font, Theme.caption);
        compare(withText(view, "or").color, Theme.tertiary);
        compare(withText(view, hint).font, Theme.caption);
        compare(withText(view, hint).color, Theme.orangeText);
        compare(symbols(findChild(view, "dimensionHint")), "info.circle");
        compare(withText(view, caption).font, Theme.caption);
        compare(withText(view, caption).color, Theme.secondary);
        compare(withText(view, "Resize").font, Theme.headline);
    }

    function test_switch_setsItsField_data() {
        return ["resizeEnabled", "convertEnabled", "preserveCopyright", "preserveCreation", "preserveLocation"].map(name => ({
                    tag: name
                }));
    }

    function test_switch_setsItsField(row) {
        const view = show(component);
        const control = findChild(view, row.tag);
        const names = ["resizeEnabled", "convertEnabled", "preserveCopyright", "preserveCreation", "preserveLocation"];
        const set = () => names.filter(name => options()[name]).join();
        compare(set(), "");
        mouseClick(control);
        compare(set(), row.tag);
        verify(control.checked);
        control.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        compare(set(), "");
        options()[row.tag] = true; // from elsewhere: the control follows
        verify(control.checked);
        compare(control.Accessible.role, Accessible.CheckBox);
        verify(control.Accessible.name !== "");
    }

    function test_picker_offersAllAndSetsItsField_data() {
        return [
            { tag: "resizeMode", open: "resizeEnabled", entries: "Scale,Fit,Cover,Thumb", last: "Thumb", before: 1 },
            { tag: "convertFormat", open: "convertEnabled", entries: "PNG,JPEG,WebP,AVIF", last: "AVIF", before: 2 },
            { tag: "destination", open: "preserveCopyright", entries: "Save Alongside Original,Overwrite Original,Save to Folder", last: "Save to Folder", before: 0 }
        ];
    }

    function test_picker_offersAllAndSetsItsField(row) {
        const view = show(component);
        mouseClick(findChild(view, row.open));
        const picker = withRole(findChild(view, row.tag), Accessible.ComboBox)[0];
        compare(picker.currentIndex, row.before);
        picker.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        tryVerify(() => withRole(root.Window.contentItem, Accessible.ListItem).sort((one, other) => one.y - other.y).map(item => item.text).join() === row.entries);
        keyClick(Qt.Key_Escape);
        tryVerify(() => withRole(root.Window.contentItem, Accessible.ListItem).length === 0);
        pick(view, row.tag, row.last);
        compare(options()[row.tag], row.entries.split(",").length - 1);
        compare(picker.displayText, row.last);
        picker.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Up);
        compare(options()[row.tag], row.entries.split(",").length - 2);
        verify(picker.Accessible.name !== "");
    }

    function test_description_followsTheMethod_data() {
        return [
            { tag: "Scale", text: "Scales the image proportionally. Provide either a target width or height, not both." },
            { tag: "Fit", text: "Scales the image proportionally to fit within the given dimensions." },
            { tag: "Cover", text: "Scales and crops the image to cover the given dimensions exactly." },
            { tag: "Thumb", text: "Intelligently crops to focus on the most interesting area." }
        ];
    }

    function test_description_followsTheMethod(row) {
        const view = show(component);
        options().resizeEnabled = true;
        pick(view, "resizeMode", row.tag);
        compare(findChild(view, "resizeDescription").text, row.text);
    }

    function test_description_followsTheDestination_data() {
        return [
            { tag: "Save Alongside Original", text: "Saves a copy with a \"-pixpress\" suffix next to the original" },
            { tag: "Overwrite Original", text: "Replaces the original file with the compressed version" },
            { tag: "Save to Folder", text: "Saves all compressed images to a chosen folder" }
        ];
    }

    function test_description_followsTheDestination(row) {
        const view = show(component);
        pick(view, "destination", row.tag);
        compare(findChild(view, "destinationDescription").text, row.text);
    }

    function test_or_standsBetweenTheFieldsOfScaleOnly() {
        const view = show(component);
        options().resizeEnabled = true;
        for (const mode of ["Fit", "Cover", "Thumb"]) {
            pick(view, "resizeMode", mode);
            verify(!findChild(view, "or").visible, mode);
        }
        pick(view, "resizeMode", "Scale");
        verify(findChild(view, "or").visible);
        const or = () => placeOf(findChild(view, "or"), view);
        tryVerify(() => or().x > placeOf(entry(view, "resizeWidth"), view).right);
        tryVerify(() => or().right < placeOf(entry(view, "resizeHeight"), view).x);
    }

    function test_resizeWithoutNumbers_showsNoHintAndSendsNoResize() {
        const view = show(component);
        mouseClick(findChild(view, "resizeEnabled"));
        verify(!findChild(view, "dimensionHint").visible);
        compare(entry(view, "resizeWidth").text, "");
        compare(entry(view, "resizeHeight").text, "");
        compare(entry(view, "resizeWidth").placeholderText, "");
        compare(entry(view, "resizeHeight").placeholderText, "");
        compare(stage.options(), "");
    }

    function test_oneDimension_showsTheHintWhateverTheMethod_data() {
        return [{ tag: "width", field: "resizeWidth" }, { tag: "height", field: "resizeHeight" }];
    }

    function test_oneDimension_showsTheHintWhateverTheMethod(row) {
        const view = show(component);
        options().resizeEnabled = true;
        fill(view, row.field, "300");
        compare(options()[row.tag], "300");
        for (const mode of ["Scale", "Cover", "Thumb", "Fit"]) {
            pick(view, "resizeMode", mode);
            verify(findChild(view, "dimensionHint").visible, mode);
        }
        fill(view, row.field === "resizeWidth" ? "resizeHeight" : "resizeWidth", "200");
        verify(!findChild(view, "dimensionHint").visible);
        fill(view, row.field, "");
        verify(findChild(view, "dimensionHint").visible);
        compare(options()[row.tag], "");
    }

    function test_typedNumber_isTakenAsItStands_data() {
        return [
            { tag: "at the end", before: "", keys: ["1", "2", "3"], text: "123" },
            { tag: "first digit replaced", before: "1050", keys: [Qt.Key_Home, Qt.Key_Delete, "2"], text: "2050" },
            { tag: "digit in the middle", before: "1050", keys: [Qt.Key_Home, Qt.Key_Right, "9"], text: "19050" },
            { tag: "last digit taken", before: "1050", keys: [Qt.Key_End, Qt.Key_Backspace], text: "105" },
            { tag: "zeros in front", before: "", keys: ["0", "0", "7"], text: "007", number: "7" },
            { tag: "ten digits", before: "", keys: Array.from("1234567890"), text: "1234567890" },
            { tag: "nothing left", before: "5", keys: [Qt.Key_Backspace], text: "" }
        ];
    }

    function test_typedNumber_isTakenAsItStands(row) {
        const view = show(component);
        options().resizeEnabled = true;
        options().width = row.before;
        const field = entry(view, "resizeWidth");
        field.forceActiveFocus(Qt.TabFocusReason);
        field.cursorPosition = row.before.length;
        row.keys.forEach(key => keyClick(key));
        compare(field.text, row.text);
        compare(options().width, row.number ?? row.text);
        verify(!findChild(view, "refusedSize").visible);
        keyClick(Qt.Key_Tab);
        compare(field.text, row.number ?? row.text);
    }

    function test_pastedNumber_isTakenOrVisiblyRefused_data() {
        return [
            { tag: "300", number: "300" },
            { tag: " 300 ", number: "300" },
            { tag: "300\n", number: "300" },
            { tag: "1234567890", number: "1234567890" },
            { tag: "9223372036854775807", number: "9223372036854775807" },
            { tag: "9223372036854775808", number: "" },
            { tag: "-5", number: "" },
            { tag: "+5", number: "" },
            { tag: "1,000", number: "" },
            { tag: "3 00", number: "" },
            { tag: "300px", number: "" },
            { tag: "1e3", number: "" }
        ];
    }

    function test_pastedNumber_isTakenOrVisiblyRefused(row) {
        const view = show(component);
        options().resizeEnabled = true;
        options().width = "42";
        const field = entry(view, "resizeWidth");
        field.forceActiveFocus(Qt.TabFocusReason);
        stage.copy(row.tag);
        field.selectAll();
        keySequence(StandardKey.Paste);
        compare(field.text, row.tag.replace("\n", ""));
        compare(options().width, row.number);
        const isRefused = row.number === "";
        const refusal = findChild(view, "refusedSize");
        compare(refusal.visible, isRefused);
        compare(field.background.borderWidth, isRefused ? 2 : 1);
        compare(field.background.borderColor, isRefused ? Theme.redText : Theme.controlBorder);
        keyClick(Qt.Key_Tab);
        compare(field.text, isRefused ? row.tag : row.number); // what is refused stays in view
        compare(refusal.visible, isRefused);
        if (!isRefused)
            return;
        compare(texts(refusal), "Enter a whole number of pixels");
        compare(refusal.color, Theme.redText);
        compare(entry(view, "resizeHeight").background.borderWidth, 1);
        fill(view, "resizeWidth", "8");
        verify(!refusal.visible);
        compare(options().width, "8");
    }

    function test_numberSetElsewhere_showsInTheField() {
        const view = show(component);
        options().resizeEnabled = true;
        fill(view, "resizeWidth", "12");
        options().width = "34";
        compare(entry(view, "resizeWidth").text, "34");
        options().width = "";
        compare(entry(view, "resizeWidth").text, "");
    }

    function test_switchedOffAndOn_keepsTheFields() {
        const view = show(component);
        mouseClick(findChild(view, "resizeEnabled"));
        fill(view, "resizeWidth", "300");
        fill(view, "resizeHeight", "200");
        pick(view, "resizeMode", "Cover");
        mouseClick(findChild(view, "resizeEnabled"));
        verify(!findChild(view, "resizeWidth").visible);
        verify(!texts(view).includes("Method"));
        mouseClick(findChild(view, "resizeEnabled"));
        compare(entry(view, "resizeWidth").text, "300");
        compare(entry(view, "resizeHeight").text, "200");
        verify(texts(view).includes("Cover"));
    }

    function test_background_showsForFormatsWithoutTransparencyOnly_data() {
        return [{ tag: "PNG", shows: false }, { tag: "JPEG", shows: true }, { tag: "WebP", shows: false }, { tag: "AVIF", shows: true }];
    }

    function test_background_showsForFormatsWithoutTransparencyOnly(row) {
        const view = show(component);
        verify(!findChild(view, "backgroundRow").visible);
        mouseClick(findChild(view, "convertEnabled"));
        pick(view, "convertFormat", row.tag);
        compare(findChild(view, "backgroundRow").visible, row.shows);
        mouseClick(findChild(view, "convertEnabled"));
        verify(!findChild(view, "backgroundRow").visible);
    }

    function test_colorWell_showsTheColour() {
        const view = show(component);
        options().convertEnabled = true;
        options().convertFormat = 1;
        const well = findChild(view, "background");
        compare(well.value, "#ffffff");
        compare(well.Accessible.name, "Background");
        options().background = "#ff8800";
        compare(well.value, "#ff8800");
        compare(painted(well).pixel(22, 12), "#ff8800");
    }

    function test_typedColour_isTakenUnlessEscapeCloses_data() {
        return [
            { tag: "Return", finish: () => keyClick(Qt.Key_Return), colour: "#123456", closes: true },
            { tag: "Tab", finish: () => keyClick(Qt.Key_Backtab), colour: "#123456", closes: false },
            { tag: "Escape", finish: () => keyClick(Qt.Key_Escape), colour: "#ffffff", closes: true }
        ];
    }

    function test_typedColour_isTakenUnlessEscapeCloses(row) {
        const view = show(component);
        options().convertEnabled = true;
        options().convertFormat = 1;
        mouseClick(findChild(view, "background"));
        const field = found("hex");
        tryCompare(field, "activeFocus", true);
        field.selectAll();
        type("#123456");
        compare(field.text, "#123456");
        row.finish();
        if (row.closes)
            tryVerify(() => find("hex") === null);
        compare(options().backgroundText, row.colour);
    }

    function test_typedTextThatIsNoColour_isVisiblyRefused_data() {
        return [
            { tag: "orange", colour: "" },
            { tag: "fff", colour: "" },
            { tag: "#ff8800ff", colour: "" },
            { tag: "0x1234", colour: "" },
            { tag: "", colour: "" },
            { tag: " #FF8800 ", colour: "#ff8800" },
            { tag: "ff8800", colour: "#ff8800" }
        ];
    }

    function test_typedTextThatIsNoColour_isVisiblyRefused(row) {
        const view = show(component);
        options().convertEnabled = true;
        options().convertFormat = 1;
        options().background = "#123456";
        mouseClick(findChild(view, "background"));
        const field = found("hex");
        tryCompare(field, "activeFocus", true);
        field.selectAll();
        keyClick(Qt.Key_Delete);
        type(row.tag);
        compare(field.text, row.tag);
        compare(find("refusedColour").visible, row.colour === "");
        keyClick(Qt.Key_Return);
        compare(options().backgroundText, row.colour || "#123456");
        if (row.colour !== "") {
            tryVerify(() => find("hex") === null);
            return;
        }
        verify(find("hex").visible, "it stays open");
        compare(texts(find("refusedColour")), "Enter six hexadecimal digits");
        compare(find("refusedColour").color, Theme.redText);
        compare(field.background.borderColor, Theme.redText);
        keyClick(Qt.Key_Escape);
        tryVerify(() => find("hex") === null);
        compare(options().backgroundText, "#123456");
    }

    function test_swatch_isTakenAndClosesTheChoice() {
        const view = show(component);
        options().convertEnabled = true;
        options().convertFormat = 1;
        mouseClick(findChild(view, "background"));
        found("hex");
        const swatches = withRole(root.Window.contentItem, Accessible.RadioButton);
        compare(swatches.length, 40);
        const colour = swatches[20].color.toString();
        mouseClick(swatches[20]);
        compare(options().backgroundText, colour);
        tryVerify(() => find("hex") === null);
    }

    function test_folderWithALineBreakInItsName_isShownOnOneLine() {
        const view = show(component);
        options().destination = 2;
        stage.pickedFolder = "file:///some/two%0Alines";
        mouseClick(findChild(view, folderButton));
        compare(findChild(view, "folder").text, "/some/two lines");
        compare(findChild(view, "folder").lineCount, 1);
    }

    function test_folder_isNoneThenShownWithItsPath() {
        const view = show(component);
        verify(!findChild(view, "folderRow").visible);
        pick(view, "destination", "Save to Folder");
        const row = findChild(view, "folderRow");
        compare(texts(row), "No folder chosen\nChoose…");
        compare(symbols(row), "folder.fill");
        compare(findChild(row, "folder").color, Theme.secondary);
        compare(findChild(row, "folder").font, Theme.caption);
        stage.pickedFolder = "file:///some/where/with a%20blank/and%23more/that/is/long/enough/to/be/cut";
        mouseClick(findChild(row, folderButton));
        compare(texts(row), "/some/where/with a blank/and#more/that/is/long/enough/to/be/cut\nChange");
        const path = findChild(row, "folder");
        compare(path.color, Theme.primary);
        compare(path.elide, Text.ElideMiddle);
        verify(path.truncated);
        compare(path.lineCount, 1);
        compare(findChild(row, folderButton).height, Theme.smallControl);
        pick(view, "destination", "Overwrite Original");
        verify(!row.visible);
    }

    function test_cancelledChooser_keepsTheFolder() {
        const view = show(component);
        options().destination = 2;
        mouseClick(findChild(view, folderButton)); // nothing is picked
        verify(texts(view).includes("No folder chosen"));
        stage.pickedFolder = "file:///first";
        mouseClick(findChild(view, folderButton));
        stage.pickedFolder = "";
        mouseClick(findChild(view, folderButton));
        verify(texts(view).includes("/first"));
    }

    function test_focused_staysInViewWhenRowsAppearAboveIt() {
        const view = show(component, { height: 300 });
        view.height = 300;
        const item = findChild(view, "preserveCopyright");
        let flickable = item.parent;
        while (flickable.contentHeight === undefined)
            flickable = flickable.parent;
        const before = flickable.contentHeight;
        item.forceActiveFocus(Qt.TabFocusReason);
        const isInView = () => placeOf(item, view).y >= 0 && placeOf(item, view).bottom <= 300;
        tryVerify(isInView);
        options().resizeEnabled = true;
        options().convertEnabled = true;
        options().convertFormat = 1;
        tryVerify(() => flickable.contentHeight > before + 200);
        tryVerify(isInView);
    }

    function test_tab_goesThroughAllControlsAndScrollsThemIntoView() {
        const view = show(component, { height: 300 });
        view.height = 300;
        options().resizeEnabled = true;
        options().convertEnabled = true;
        options().convertFormat = 1;
        options().destination = 2;
        findChild(view, "resizeEnabled").forceActiveFocus(Qt.TabFocusReason);
        const names = [];
        for (let i = 0; i < 12; ++i) {
            const item = root.Window.activeFocusItem;
            names.push(item.Accessible.name);
            tryVerify(() => placeOf(item, view).y >= 0 && placeOf(item, view).bottom <= 300, 5000, names[i] + " is in view");
            keyClick(Qt.Key_Tab);
        }
        compare(names, ["Enable Resize", "Method", "Width", "Height", "Convert Format", "Convert to", "Background", "Copyright", "Creation Date", "GPS Location", "Save to", "Choose…"]);
        compare(root.Window.activeFocusItem, findChild(view, "resizeEnabled"));
    }

    function test_tabBackwards_scrollsNoFurtherThanItMust() {
        const view = show(component, { height: 300 });
        const form = findChild(view, "form");
        findChild(view, "resizeEnabled").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Backtab); // to the last
        tryVerify(() => form.contentY > 100);
        const end = form.contentY;
        for (let i = 0; i < 10 && form.contentY === end; ++i)
            keyClick(Qt.Key_Backtab);
        verify(form.contentY > 0 && form.contentY < end, form.contentY);
        compare(placeOf(root.Window.activeFocusItem, view).y, 16);
    }

    function test_change_takesEffectForTheNextFiles() {
        const view = show(component);
        mouseClick(findChild(view, "preserveCopyright"));
        addAndFinish("a.png");
        verify(stage.outputRequests.join().includes("copyright"), stage.outputRequests.join());
    }
}
