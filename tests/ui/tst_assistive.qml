// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

/// Controls as assistive technology works them: by action, without mouse or keyboard.
ViewTest {
    id: root

    name: "AssistiveTechnology"

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
        compare(stage.batches, [1]);
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
