// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

ViewTest {
    id: root

    name: "Theme"

    Component {
        id: symbolComponent

        Symbol {
            name: "folder.fill"
            size: 40
        }
    }

    function cleanup() {
        stage.setDark(false);
    }

    /// What is seen of a colour that lets some of the ground through.
    function over(front: color, ground: color): color {
        const mixed = name => front[name] * front.a + ground[name] * (1 - front.a);
        return Qt.rgba(mixed("r"), mixed("g"), mixed("b"), 1);
    }

    function luminance(c: color): real {
        const linear = value => value <= 0.04045 ? value / 12.92 : Math.pow((value + 0.055) / 1.055, 2.4);
        return 0.2126 * linear(c.r) + 0.7152 * linear(c.g) + 0.0722 * linear(c.b);
    }

    function contrast(front: color, ground: color): real {
        const one = luminance(over(front, ground));
        const other = luminance(ground);
        return (Math.max(one, other) + 0.05) / (Math.min(one, other) + 0.05);
    }

    function test_contrast_isThatOfBlackOnWhite() {
        fuzzyCompare(contrast(Qt.color("#000000"), Qt.color("#ffffff")), 21, 0.01);
        fuzzyCompare(contrast(Qt.color("#80000000"), Qt.color("#ffffff")), contrast(Qt.color("#7f7f7f"), Qt.color("#ffffff")), 0.1);
    }

    function test_text_canBeReadOnItsGround_data() {
        const grounds = ["windowBackground", "contentBackground", "sidebarBackground", "groupBackground"];
        const on = {
            primary: grounds.concat(["menuBackground", "controlFill", "controlPressed", "fieldFill", "selection"]),
            secondary: grounds.concat(["controlFill"]),
            tertiary: ["windowBackground", "contentBackground", "groupBackground", "fieldFill"],
            blueText: ["windowBackground", "contentBackground", "groupBackground"],
            orangeText: ["contentBackground", "groupBackground"],
            greenText: ["contentBackground", "groupBackground"],
            redText: ["contentBackground", "groupBackground"],
            onAccent: ["accentFill"]
        };
        const rows = [];
        for (const dark of [false, true]) {
            for (const text in on) {
                for (const ground of on[text])
                    rows.push({ tag: (dark ? "dark " : "light ") + text + " on " + ground, dark, text, ground });
            }
        }
        return rows;
    }

    function test_text_canBeReadOnItsGround(row) {
        stage.setDark(row.dark);
        tryCompare(Theme, "dark", row.dark);
        const ratio = contrast(Theme[row.text], Theme[row.ground]);
        verify(ratio >= 4.5, "it is " + ratio.toFixed(2));
    }

    function test_tileLabel_canBeReadOnItsTint_data() {
        const rows = [];
        for (const dark of [false, true]) {
            for (const name of ["blue", "orange", "green", "purple", "gray"])
                rows.push({ tag: (dark ? "dark " : "light ") + name, dark, name });
        }
        return rows;
    }

    function test_tileLabel_canBeReadOnItsTint(row) {
        stage.setDark(row.dark);
        tryCompare(Theme, "dark", row.dark);
        const tint = Theme[row.name];
        const tile = over(Qt.rgba(tint.r, tint.g, tint.b, 0.12), Theme.contentBackground);
        const ratio = contrast(Theme[row.name + "Text"], tile);
        verify(ratio >= 4.5, "it is " + ratio.toFixed(2));
    }

    function test_monthOnItsCapsule_canBeRead() {
        for (const dark of [false, true]) {
            stage.setDark(dark);
            tryCompare(Theme, "dark", dark);
            for (const ground of [Theme.contentBackground, Theme.groupBackground]) {
                const ratio = contrast(Theme.tertiary, over(Theme.quaternary, ground));
                verify(ratio >= 4.5, (dark ? "dark " : "light ") + ratio.toFixed(2));
            }
        }
    }

    function test_symbol_isPaintedInItsColourAndAnewInAnother() {
        const symbol = show(symbolComponent, { color: "#ff0000" });
        compare(painted(symbol).pixel(20, 24), "#ff0000");
        symbol.color = "#00ff00";
        tryVerify(() => Qt.colorEqual(painted(symbol).pixel(20, 24), "#00ff00"));
    }

    function test_scheme_switchesLive() {
        const before = Theme.windowBackground;
        stage.setDark(true);
        tryCompare(Theme, "dark", true);
        compare(Theme.windowBackground, "#1e1e1e");
        compare(Theme.blue, "#0a84ff");
        stage.setDark(false);
        tryCompare(Theme, "dark", false);
        compare(Theme.windowBackground, before);
        compare(Theme.blue, "#007aff");
    }
}
