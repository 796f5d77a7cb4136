// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

ViewTest {
    id: root

    name: "DropZoneView"

    Component {
        id: component

        DropZoneView {
            app: root.stage.app
            isTargeted: false
            width: 640
            height: 500
        }
    }

    function test_texts_areThose() {
        const view = show(component);
        compare(texts(view), "Drop Images Here\nPNG, JPEG, WebP, AVIF — up to 500 MB each\nChoose Files");
        compare(symbols(view), "arrow.down.doc.fill folder");
        compare(withText(view, "Drop Images Here").font, Theme.title2);
        compare(withText(view, "Drop Images Here").color, Theme.primary);
        compare(withText(view, "PNG, JPEG, WebP, AVIF — up to 500 MB each").font, Theme.subheadline);
        compare(withText(view, "PNG, JPEG, WebP, AVIF — up to 500 MB each").color, Theme.secondary);
    }

    function test_outline_standsTwentyPointsInside() {
        const view = show(component);
        compare(placeOf(findChild(view, "outline"), view), Qt.rect(20, 20, 600, 460));
    }

    function test_outline_isDrawnInsideItsBoundsAndDashed() {
        const view = show(component, { isTargeted: true });
        const outline = findChild(view, "outline");
        tryCompare(outline, "color", Theme.blue);
        compare(outline.radius, 16);
        const image = painted(outline);
        const isDrawn = (x, y) => image.pixel(x, y).r < 0.5; // blue on light
        let starts = [];
        let drawn = 0;
        for (let x = 100; x < 500; ++x) {
            if (isDrawn(x, 1) && !isDrawn(x - 1, 1))
                starts.push(x);
            drawn += isDrawn(x, 1);
            verify(!isDrawn(x, 4), "the line is 2.5 points wide");
        }
        fuzzyCompare((starts[starts.length - 1] - starts[0]) / (starts.length - 1), 16, 0.1);
        fuzzyCompare(drawn / 400, 10 / 16, 0.05);
        verify(!isDrawn(0, 0) && !isDrawn(2, 2), "the corner is round");
    }

    function test_content_isCentredAndSpaced() {
        const view = show(component);
        const badge = placeOf(findChild(view, "badge"), view);
        const title = placeOf(withText(view, "Drop Images Here"), view);
        const subtitle = placeOf(withText(view, "PNG, JPEG, WebP, AVIF — up to 500 MB each"), view);
        const button = placeOf(findChild(view, "browse"), view);
        compare(badge.width, 100);
        compare(badge.height, 100);
        compare(findChild(view, "badge").radius, 50);
        compare(badge.x + 50, 320);
        compare(title.y, badge.bottom + 20);
        compare(subtitle.y, title.bottom + 8);
        compare(button.y, subtitle.bottom + 20);
        compare(button.height, Theme.largeControl);
        fuzzyCompare(button.x + button.width / 2, 320, 0.5);
        fuzzyCompare(badge.y, 500 - button.bottom, 1);
    }

    function test_drag_turnsTheOutlineBlueAndEnlargesTheBadge() {
        const view = show(component);
        const outline = findChild(view, "outline");
        const badge = findChild(view, "badge");
        const gray = Qt.rgba(Theme.gray.r, Theme.gray.g, Theme.gray.b, 0.3);
        compare(outline.color, gray);
        compare(badge.scale, 1);
        compare(badge.color, Qt.rgba(Theme.blue.r, Theme.blue.g, Theme.blue.b, 0.1));
        view.isTargeted = true;
        verify(outline.color !== Theme.blue && badge.scale < 1.15, "they move");
        tryCompare(outline, "color", Theme.blue);
        tryCompare(badge, "scale", 1.15);
        view.isTargeted = false;
        verify(badge.scale > 1, "it moves back");
        tryCompare(outline, "color", gray);
        tryCompare(badge, "scale", 1);
    }

    function test_changes_areTimedAndEased() {
        const view = show(component);
        view.isTargeted = true;
        compare(stage.animations(findChild(view, "outline")), ["ColorAnimation duration 200 easing InOutQuad"]);
        // The stiffness (2π / 0.3)² and the friction 2 · 0.825 · 2π / 0.3, times 0.016.
        compare(stage.animations(findChild(view, "badge")), ["SpringAnimation spring 7.02 damping 0.553 mass 1"]);
    }

    function test_badge_holdsItsSymbol() {
        const view = show(component);
        const badge = findChild(view, "badge");
        const symbol = shown(badge).filter(item => item.name !== undefined && item.size !== undefined)[0];
        compare(symbol.name, "arrow.down.doc.fill");
        compare(symbol.size, 46); // of a font of 40 points
        compare(symbol.color, "#007aff");
        compare(symbol.opacity, 0.7);
        const place = placeOf(symbol, badge);
        compare([place.x + place.width / 2, place.y + place.height / 2], [50, 50]);
    }

    function test_button_padsItsLabel() {
        const button = findChild(show(component), "browse");
        compare(button.labelPadding, 8);
        compare(button.width, button.implicitContentWidth + 2 * (12 + 8));
        compare(button.height, 30);
    }

    function test_badge_swingsOverALittle() {
        const view = show(component);
        const badge = findChild(view, "badge");
        let largest = 0;
        badge.scaleChanged.connect(() => largest = Math.max(largest, badge.scale));
        view.isTargeted = true;
        tryCompare(badge, "scale", 1.15);
        verify(largest >= 1.15 && largest < 1.16, "damped to 0.825 it overshoots by 1 %: " + largest);
    }

    function test_chooseFiles_opensThePanelAndAddsWhatIsPicked_data() {
        return [{ tag: "click", act: button => mouseClick(button) }, {
                tag: "space",
                act: button => {
                    button.forceActiveFocus(Qt.TabFocusReason);
                    keyClick(Qt.Key_Space);
                }
            }];
    }

    function test_chooseFiles_opensThePanelAndAddsWhatIsPicked(row) {
        const view = show(component);
        stage.picked = [stage.file("a.png"), stage.file("b.webp")];
        row.act(findChild(view, "browse"));
        tryCompare(stage, "batches", [2]);
    }

    function test_controls_haveNames() {
        const view = show(component);
        compare(findChild(view, "browse").Accessible.name, "Choose Files");
        compare(findChild(view, "browse").Accessible.role, Accessible.Button);
        compare(withRole(view, Accessible.Heading).length, 1);
    }
}
