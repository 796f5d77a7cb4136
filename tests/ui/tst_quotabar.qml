// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtTest
import Pixpress
import Pixpress.Testing

TestCase {
    id: root

    name: "QuotaBarView"
    when: windowShown
    visible: true
    width: 600
    height: 60

    Stage {
        id: stage
    }

    Component {
        id: view

        QuotaBarView {
            width: root.width
            quotaTracker: stage.app.appState.quotaTracker
        }
    }

    function init() {
        failOnWarning(/.?/);
    }

    function test_count_data() {
        return [
            { tag: "0", count: 0, color: Theme.blue, left: "(500 left)" },
            { tag: "375", count: 375, color: Theme.blue, left: "(125 left)" },
            { tag: "376", count: 376, color: Theme.orange, left: "(124 left)" },
            { tag: "450", count: 450, color: Theme.orange, left: "(50 left)" },
            { tag: "451", count: 451, color: Theme.red, left: "(49 left)" },
            { tag: "520", count: 520, color: Theme.red, left: "(0 left)" },
            { tag: "3000000000", count: 3000000000, color: Theme.red, left: "(0 left)" }
        ];
    }

    function test_count(row) {
        const bar = createTemporaryObject(view, root);
        stage.setCount(row.count);
        compare(findChild(bar, "count").text, row.count + "/500");
        compare(findChild(bar, "remaining").text, row.left);
        compare(findChild(bar, "fill").color, row.color);
        tryVerify(() => findChild(bar, "bar").width > 100);
        compare(findChild(bar, "fill").width, findChild(bar, "bar").width * row.count / 500);
        compare(findChild(bar, "fill").height, 8);
        compare(findChild(bar, "fill").radius, 4);
    }

    function test_bar_looksAsDrawn() {
        const bar = createTemporaryObject(view, root);
        stage.setCount(376);
        waitForRendering(bar);
        const symbol = bar.children[0];
        compare([symbol.name, symbol.size, symbol.color.toString()], ["chart.bar.fill", 15, "#ff9500"]); // of a font of 12
        const count = findChild(bar, "count");
        compare([count.font.pixelSize, count.font.weight, count.color.toString()], [10, Font.DemiBold, "#d9000000"]);
        compare(count.font.family, Theme.bodyMonospaced.family);
        const remaining = findChild(bar, "remaining");
        compare([remaining.font.pixelSize, remaining.font.weight, remaining.color.toString()], [10, Font.Normal, "#a0000000"]);
        const month = findChild(bar, "month");
        compare([month.font.pixelSize, month.font.weight, month.color.toString()], [10, Font.Normal, "#92000000"]);
        const badge = month.parent;
        compare(badge.color, "#1a000000");
        compare(badge.radius, badge.height / 2);
        compare(month.y, 2);
        fuzzyCompare(month.x, 6, 0.5);
        fuzzyCompare(badge.width, month.width + 12, 1);
        compare(badge.height, month.height + 4);
        const parts = [symbol, findChild(bar, "bar"), count, remaining, badge];
        for (let i = 1; i < parts.length; ++i)
            fuzzyCompare(parts[i].x - parts[i - 1].x - parts[i - 1].width, 12, 0.01);
        for (const part of parts)
            fuzzyCompare(part.y + part.height / 2, bar.height / 2, 0.5);
        compare(badge.x + badge.width, bar.width);
    }

    function test_newMonth_showsWithACountOfZero() {
        stage.setCount(123);
        const bar = createTemporaryObject(view, root);
        compare(findChild(bar, "count").text, "123/500");
        stage.today = new Date(2031, 1, 3, 12);
        stage.rollOver();
        compare(findChild(bar, "month").text, "2031-02");
        compare(findChild(bar, "count").text, "0/500");
        compare(findChild(bar, "remaining").text, "(500 left)");
        compare(findChild(bar, "fill").width, 0);
    }

    function test_month_isShownAsItIsStored() {
        const bar = createTemporaryObject(view, root);
        stage.app.appState.quotaTracker.monthYear = "2025-03";
        compare(findChild(bar, "month").text, "2025-03");
    }
}
