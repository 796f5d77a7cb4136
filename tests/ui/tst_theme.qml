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

    /// Light and dark, in usual and in high contrast, each with what stands on what.
    function combinations(pairs) {
        const rows = [];
        for (const dark of [false, true]) {
            for (const highContrast of [false, true]) {
                for (const front in pairs) {
                    for (const ground of pairs[front])
                        rows.push({ tag: (dark ? "dark " : "light ") + (highContrast ? "strong " : "") + front + " on " + ground, dark, highContrast, front, ground });
                }
            }
        }
        return rows;
    }

    function look(row) {
        stage.setDark(row.dark);
        stage.prefer({ highContrast: row.highContrast });
        tryCompare(Theme, "dark", row.dark);
        compare(Theme.highContrast, row.highContrast);
    }

    function checkContrast(front: color, ground: color, least: real) {
        const ratio = contrast(front, ground);
        verify(ratio >= least, "it is " + ratio.toFixed(2));
    }

    function test_text_canBeReadOnItsGround_data() {
        const grounds = ["windowBackground", "contentBackground", "sidebarBackground", "groupBackground"];
        const text = ["windowBackground", "contentBackground", "groupBackground"];
        return combinations({
            primary: grounds.concat(["menuBackground", "controlFill", "controlPressed", "fieldFill", "selection"]),
            secondary: grounds.concat(["menuBackground", "controlFill"]),
            tertiary: text.concat(["fieldFill"]),
            blueText: text,
            orangeText: text,
            greenText: text,
            redText: text,
            onAccent: ["accentFill"]
        });
    }

    function test_text_canBeReadOnItsGround(row) {
        look(row);
        checkContrast(Theme[row.front], Theme[row.ground], row.highContrast ? 7 : 4.5);
    }

    function test_tileLabel_canBeReadOnItsTint_data() {
        const pairs = {};
        for (const name of ["blue", "orange", "green", "purple", "gray"])
            pairs[name + "Text"] = [name];
        return combinations(pairs);
    }

    function test_tileLabel_canBeReadOnItsTint(row) {
        look(row);
        const tint = Theme[row.ground];
        const tile = over(Qt.rgba(tint.r, tint.g, tint.b, 0.12), Theme.contentBackground);
        checkContrast(Theme[row.front], tile, row.highContrast ? 7 : 4.5);
    }

    function test_textOnAFaintFill_canBeRead_data() {
        return combinations({
            tertiary: ["contentBackground", "groupBackground"], // the month, on its capsule
            primary: ["windowBackground"], // tabs, and what is pointed at in the menu bar
            secondary: ["contentBackground"] // the folder of a row
        });
    }

    function test_textOnAFaintFill_canBeRead(row) {
        look(row);
        checkContrast(Theme[row.front], over(Theme.quaternary, Theme[row.ground]), row.highContrast ? 7 : 4.5);
    }

    function test_shapes_standOutInHighContrast_data() {
        const grounds = ["windowBackground", "contentBackground", "sidebarBackground", "groupBackground"];
        return combinations({
            separator: grounds,
            controlBorder: grounds.concat(["menuBackground", "controlFill", "fieldFill"]),
            focusRing: grounds,
            outline: ["contentBackground"],
            gray: ["sidebarBackground", "contentBackground"], // the scroll bars
            blue: ["windowBackground", "contentBackground", "groupBackground"],
            orange: ["contentBackground", "groupBackground"],
            red: ["contentBackground", "groupBackground"],
            switchTrack: ["groupBackground"],
            accentFill: ["groupBackground", "menuBackground"],
            switchKnob: ["switchTrack", "accentFill"]
        }).filter(row => row.highContrast);
    }

    function test_shapes_standOutInHighContrast(row) {
        look(row);
        checkContrast(Theme[row.front], Theme[row.ground], 3);
    }

    function test_colours_areTheseFigures_data() {
        return [
            { tag: "light", dark: false, colours: { blue: "#007aff", green: "#28cd41", orange: "#ff9500", red: "#ff3b30", purple: "#af52de", gray: "#8e8e93", windowBackground: "#ececec", contentBackground: "#ffffff", sidebarBackground: "#f5f5f5", primary: "#d9000000", secondary: "#a0000000", tertiary: "#92000000", quaternary: "#1a000000", separator: "#1a000000", outline: "#4d8e8e93" } },
            { tag: "dark", dark: true, colours: { blue: "#0a84ff", green: "#32d74b", orange: "#ff9f0a", red: "#ff453a", purple: "#bf5af2", gray: "#98989d", windowBackground: "#1e1e1e", contentBackground: "#262626", sidebarBackground: "#242424", primary: "#d9ffffff", secondary: "#a8ffffff", tertiary: "#94ffffff", quaternary: "#1affffff", separator: "#1affffff", outline: "#4d98989d" } }
        ];
    }

    function test_colours_areTheseFigures(row) {
        look({ dark: row.dark, highContrast: false });
        for (const name in row.colours)
            compare(Theme[name].toString(), row.colours[name], name);
    }

    function test_fonts_areOfTheseSizesAndWeights() {
        const fonts = {
            largeTitle: [26, Font.Bold],
            title: [22, Font.Bold],
            title2: [17, Font.DemiBold],
            title3: [15, Font.Bold],
            headline: [13, Font.Bold],
            body: [13, Font.Normal],
            bodyMedium: [13, Font.Medium],
            bodyMonospaced: [13, Font.Normal],
            subheadline: [11, Font.Normal],
            subheadlineMedium: [11, Font.Medium],
            caption: [10, Font.Normal],
            captionMedium: [10, Font.Medium],
            captionMonospaced: [10, Font.DemiBold],
            caption2: [10, Font.Normal],
            tileLabel: [10, Font.Bold]
        };
        for (const name in fonts)
            compare([Theme[name].pixelSize, Theme[name].weight], fonts[name], name);
        compare([Theme.calloutSize, Theme.captionSize, Theme.smallControl, Theme.regularControl, Theme.largeControl, Theme.padding, Theme.duration], [12, 10, 20, 24, 30, 16, 200]);
    }

    function test_contrast_switchesLive() {
        const before = Theme.primary;
        stage.prefer({ highContrast: true });
        compare(Theme.primary, "#000000");
        stage.prefer({});
        compare(Theme.primary, before);
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
