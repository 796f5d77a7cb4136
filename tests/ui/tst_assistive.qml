// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtTest
import Pixpress

/// Controls as assistive technology works them: by action, without mouse or keyboard.
ViewTest {
    id: root

    name: "AssistiveTechnology"

    SignalSpy {
        id: clicks

        signalName: "clicked"
    }

    Component {
        id: component

        MainView {
            app: root.stage.app
            width: root.width
            height: root.height
        }
    }

    function test_toolbarButton_isPressed() {
        show(component);
        verify(stage.act(find("settings"), "Press"));
        verify(stage.app.appState.showSettings);
    }

    function test_pushButton_isPressed() {
        show(component);
        stage.picked = [stage.file("a.png")];
        verify(stage.act(find("browse"), "Press"));
        tryCompare(stage, "batches", [1]);
    }

    function test_disabledButton_cannotBePressed_data() {
        return [{ tag: "PushButton", name: "getStarted" }, { tag: "ToolbarButton", name: "clearDone" }];
    }

    function test_disabledButton_cannotBePressed(row) {
        if (row.name === "getStarted")
            stage.start("");
        else
            stage.hold();
        show(component);
        if (row.name === "clearDone")
            stage.app.handleDrop([stage.file("a.png")]);
        const button = found(row.name);
        verify(!button.enabled);
        clicks.target = button;
        clicks.clear();
        stage.act(button, "Press");
        compare(clicks.count, 0);
    }

    function test_popUpButton_tellsItsChoiceAndIsOpenedAndChosenFrom() {
        show(component);
        const button = withRole(find("destination"), Accessible.ComboBox)[0];
        compare(button.Accessible.name, "Save to");
        compare(button.Accessible.description, "Save Alongside Original. Saves a copy with a \"-pixpress\" suffix next to the original");
        verify(stage.act(button, "Press"));
        const entries = () => withRole(root.Window.contentItem, Accessible.ListItem);
        tryVerify(() => entries().length === 3);
        verify(stage.act(entries().find(entry => entry.text === "Overwrite Original"), "Press"));
        compare(stage.app.options.destination, 1);
        compare(button.Accessible.description, "Overwrite Original. Replaces the original file with the compressed version");
        tryVerify(() => entries().length === 0);
    }

    function test_entryOfARowsMenu_isPressed() {
        show(component);
        addAndFinish("a.png");
        mouseClick(find("rows").itemAtIndex(0), 200, 20, Qt.RightButton);
        const entries = () => withRole(root.Window.contentItem, Accessible.MenuItem);
        tryVerify(() => entries().length === 1);
        verify(stage.act(entries()[0], "Press"));
        compare(stage.revealed.length, 1);
        tryVerify(() => entries().length === 0);
    }

    function test_disabledEntryOfAMenu_cannotBePressed() {
        stage.start("");
        show(component);
        const field = find("key");
        field.text = "12";
        mouseClick(field, 5, 5, Qt.RightButton);
        const entries = () => withRole(root.Window.contentItem, Accessible.MenuItem);
        tryVerify(() => entries().length === 4);
        const cut = entries()[0];
        compare(cut.text, "Cut");
        verify(!cut.enabled); // nothing is selected, and it is a password
        clicks.target = cut;
        clicks.clear();
        stage.act(cut, "Press");
        compare(clicks.count, 0);
        verify(stage.act(entries()[3], "Press"));
        compare(field.selectionEnd, 2);
        tryVerify(() => entries().length === 0);
    }

    function test_sheet_isNamed() {
        show(component);
        stage.app.appState.showSettings = true;
        found("tabs");
        compare(stage.described(find("tabs").parent.parent), Accessible.Dialog + " Settings");
    }

    function test_switch_isToggledAndPressed() {
        show(component);
        const control = find("resizeEnabled");
        verify(stage.act(control, "Toggle"));
        verify(stage.app.options.resizeEnabled);
        verify(control.checked);
        stage.act(control, "Toggle");
        verify(!stage.app.options.resizeEnabled);
    }

    function test_tab_isPressed() {
        show(component);
        stage.app.appState.showSettings = true;
        found("tabs");
        verify(stage.act(withRole(find("tabs"), Accessible.PageTab)[2], "Press"));
        compare(find("tabs").currentIndex, 2);
    }

    function test_rowAndItsButton_revealTheFile() {
        show(component);
        addAndFinish("a.png");
        verify(stage.act(found("reveal"), "Press"));
        compare(stage.revealed.length, 1);
        verify(stage.act(find("rows").itemAtIndex(0), "Press"));
        compare(stage.revealed.length, 2);
    }

    function test_link_isPressed() {
        show(component);
        stage.app.appState.showSettings = true;
        found("tabs");
        const link = withRole(root.Window.contentItem, Accessible.Link)[0];
        verify(stage.act(link, "Press"));
        compare(stage.opened.length, 1);
    }
}
