// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Pixpress

ViewTest {
    id: root

    name: "ThumbnailView"

    Component {
        id: component

        ThumbnailView {
            thumbnails: root.stage.app.thumbnails
        }
    }

    function test_tile_isTintedByFormat_data() {
        return [
            { tag: "a.png", label: "PNG", tint: Theme.blue },
            { tag: "a.jpg", label: "JPG", tint: Theme.orange },
            { tag: "a.jpeg", label: "JPEG", tint: Theme.orange },
            { tag: "photo.JPG", label: "JPG", tint: Theme.orange },
            { tag: "a.webp", label: "WEBP", tint: Theme.green },
            { tag: "a.avif", label: "AVIF", tint: Theme.purple },
            { tag: "a.gif", label: "GIF", tint: Theme.gray },
            { tag: "a b#c%.WebP", label: "WEBP", tint: Theme.green },
            { tag: "nothing", label: "", tint: Theme.gray }
        ];
    }

    function test_tile_isTintedByFormat(row) {
        const view = createTemporaryObject(component, root, { url: stage.file(row.tag) });
        compare(view.tileColor, Qt.rgba(row.tint.r, row.tint.g, row.tint.b, 0.12));
        compare(view.radius, 8);
        compare(texts(view), row.label);
        compare(findChild(view, "extension").font, Theme.tileLabel);
        compare(Theme.tileLabel.pixelSize, 10);
        verify(Theme.tileLabel.bold);
        compare(view.width, 36);
        compare(view.height, 36);
        compare(view.Accessible.role, Accessible.Graphic);
    }

    function test_photo_showsItsTileUntilItsPictureArrives() {
        const view = createTemporaryObject(component, root, { url: stage.picture("photo.JPG", 60, 60) });
        compare(texts(view), "JPG");
        compare(view.tileColor, "#1fff9500");
        tryVerify(() => texts(view) === "");
    }

    function test_sample_ofEveryFormatShows_data() {
        return ["lake at dusk.jpg", "island map.png", "marbled ink.webp", "city by night.avif", "lighthouse.jpeg"].map(name => ({
                    tag: name
                }));
    }

    function test_sample_ofEveryFormatShows(row) {
        const view = createTemporaryObject(component, root, { url: stage.sample(row.tag) });
        verify(texts(view) !== "");
        tryVerify(() => texts(view) === "");
    }

    function test_turnedPhoto_standsUpright() {
        const view = createTemporaryObject(component, root, { url: stage.turnedPhoto("turned.jpg", 80, 60) });
        tryVerify(() => texts(view) === "");
        const image = painted(view);
        for (const x of [6, 18, 30]) {
            verify(image.pixel(x, 6).r > 0.8 && image.pixel(x, 6).b < 0.2, "red above: " + image.pixel(x, 6));
            verify(image.pixel(x, 30).b > 0.8 && image.pixel(x, 30).r < 0.2, "blue below: " + image.pixel(x, 30));
        }
    }

    function test_edges_areOfThePictureItself_data() {
        return [{ tag: "not quite square", width: 100, height: 97 }, { tag: "square", width: 300, height: 300 }];
    }

    /// Red at the left, blue at the right: neither reaches the other edge.
    function test_edges_areOfThePictureItself(row) {
        const view = createTemporaryObject(component, root, { url: stage.picture(row.tag + ".png", row.width, row.height) });
        tryVerify(() => texts(view) === "");
        const image = painted(view);
        for (const y of [12, 18, 24]) {
            verify(image.pixel(0, y).r > 0.95 && image.pixel(0, y).b < 0.05, "left: " + image.pixel(0, y));
            verify(image.pixel(35, y).b > 0.95 && image.pixel(35, y).r < 0.05, "right: " + image.pixel(35, y));
        }
    }

    function test_corruptPicture_keepsItsTile() {
        // A PNG whose pixels do not decode.
        const view = createTemporaryObject(component, root, { url: stage.brokenPicture("broken.png") });
        // The picture asked for next has come, so the broken one is through.
        const other = createTemporaryObject(component, root, { url: stage.picture("fine.png", 50, 50) });
        tryVerify(() => texts(other) === "");
        tryCompare(findChild(view, "extension"), "text", "PNG");
        verify(findChild(view, "extension").visible);
        compare(view.tileColor, "#1f007aff");
    }

    function test_wideAndTallPictures_fillTheSquare_data() {
        return [{ tag: "wide", width: 360, height: 36 }, { tag: "tall", width: 36, height: 360 }];
    }

    function test_wideAndTallPictures_fillTheSquare(row) {
        const view = createTemporaryObject(component, root, {
            url: stage.picture(row.tag + ".png", row.width, row.height)
        });
        tryVerify(() => texts(view) === "");
        const image = painted(view);
        const middle = row.tag === "wide" ? [[1, 18], [18, 18], [34, 18], [18, 0], [18, 35]] : [[18, 0], [18, 18], [18, 35]];
        for (const [x, y] of middle)
            verify(image.pixel(x, y).g > 0.8 && image.pixel(x, y).r < 0.3, x + "," + y + " is green: " + image.pixel(x, y));
        if (row.tag === "tall") {
            verify(image.pixel(2, 18).r > 0.8, "red at the left");
            verify(image.pixel(33, 18).b > 0.8, "blue at the right");
        }
        for (const [x, y] of [[0, 0], [35, 0], [0, 35], [35, 35]])
            verify(image.pixel(x, y).g > 0.8 && image.pixel(x, y).r > 0.8, "the corner is cut: " + image.pixel(x, y));
    }

    function test_otherUrl_startsAnewWithItsTile() {
        const view = createTemporaryObject(component, root, { url: stage.picture("first.png", 60, 60) });
        tryVerify(() => texts(view) === "");
        view.url = stage.file("second.webp");
        compare(texts(view), "WEBP");
        view.url = stage.picture("third.jpg", 60, 60);
        compare(texts(view), "JPG");
        tryVerify(() => texts(view) === "");
    }
}
