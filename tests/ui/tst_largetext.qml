// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtTest
import Pixpress

/// The window grows with the desktop's text, as long as it shows; what no longer fits can be
/// scrolled to.
ViewTest {
    id: root

    name: "LargeText"

    Component {
        id: component

        MainView {
            app: root.stage.app
            width: root.width
            height: 500
        }
    }

    Component {
        id: windowComponent

        PixpressWindow {
            app: root.stage.app
        }
    }

    function openSettings(tab: int) {
        stage.app.appState.showSettings = true;
        found("tabs").currentIndex = tab;
    }

    /// The page of the settings that can be scrolled.
    function page(): Item {
        let around = find("reset");
        while (around.contentY === undefined)
            around = around.parent;
        return around;
    }

    function test_textAndWhatItStandsIn_growWhileTheyShow() {
        show(component);
        const toggle = find("resizeEnabled");
        const sizes = () => [Theme.caption.pixelSize, Theme.body.pixelSize, toggle.font.pixelSize, toggle.height];
        compare(sizes(), [10, 13, 13, 24]);
        stage.prefer({ textScale: 1.5 });
        compare(sizes(), [15, 20, 20, 36]);
        stage.prefer({ textScale: 2 });
        compare(sizes(), [20, 26, 26, 48]);
        stage.prefer({});
        compare(sizes(), [10, 13, 13, 24]);
    }

    function test_smallestWindow_growsToItsUsualSize() {
        const window = createTemporaryObject(windowComponent, root);
        const smallest = () => [window.minimumWidth, window.minimumHeight];
        compare(smallest(), [800, 550]);
        for (const [textScale, size] of [[1.5, [860, 585]], [2, [920, 620]], [1, [800, 550]]]) {
            for (const side of size)
                ignoreWarning("This plugin does not support propagateSizeHints()");
            stage.prefer({ textScale });
            compare(smallest(), size);
        }
    }

    function test_sidebar_isWideEnoughForItsChoices_data() {
        return [1, 1.25, 1.5, 2].map(scale => ({ tag: scale.toFixed(2), scale }));
    }

    function test_sidebar_isWideEnoughForItsChoices(row) {
        stage.prefer({ textScale: row.scale });
        show(component);
        const choice = withText(find("destination"), "Save Alongside Original");
        verify(!choice.truncated);
    }

    function test_settings_areScrolledOnlyWhereTheyMustBe() {
        show(component);
        openSettings(1);
        verify(!page().interactive);
        for (const tab of [0, 2]) {
            find("tabs").currentIndex = tab;
            verify(!page().interactive);
        }
        stage.prefer({ textScale: 2 });
        find("tabs").currentIndex = 1;
        tryVerify(() => page().interactive);
    }

    function test_focus_scrollsToWhatDoesNotFit() {
        stage.prefer({ textScale: 2 });
        show(component);
        openSettings(1);
        const reset = found("reset");
        const isInSight = () => {
            const place = placeOf(reset, page());
            return place.top >= 0 && place.bottom <= page().height;
        };
        tryVerify(() => !isInSight());
        reset.forceActiveFocus(Qt.TabFocusReason);
        tryVerify(isInSight);
    }

    function test_greeting_canBeScrolledWhenItIsLarge() {
        stage.start("");
        const view = show(component);
        const card = found("card");
        let greeting = card;
        while (greeting.contentY === undefined)
            greeting = greeting.parent;
        verify(!greeting.interactive);
        stage.prefer({ textScale: 2 });
        tryVerify(() => greeting.interactive);
        verify(placeOf(card, view).left >= 20 && placeOf(card, view).right <= view.width - 20);
    }
}
