// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtTest
import Pixpress.Testing

/// A test of one view on a stage that is set anew for each test.
TestCase {
    id: root

    readonly property Stage stage: Stage {}
    readonly property Drag drag: Drag {}
    property string key: "stored" ///< That the application starts with.

    when: windowShown
    visible: true
    width: 920
    height: 620

    function init() {
        failOnWarning(/.?/);
        stage.start(key);
        stage.setDark(false);
        stage.prefer({});
    }

    /// The view, laid out and painted; gone after the test.
    function show(component, properties): Item {
        const view = createTemporaryObject(component, root, properties ?? {});
        verify(waitForRendering(view), "it is painted");
        return view;
    }

    /// Of the whole window, what pops up included.
    function find(name: string): Item {
        return search(root.Window.contentItem, name);
    }

    /// Like findChild(), which stumbles over items that are just going.
    function search(item, name: string): Item {
        if (!item || item.objectName === name)
            return item;
        for (let i = 0; i < item.children.length; ++i) {
            const match = search(item.children[i], name);
            if (match)
                return match;
        }
        return null;
    }

    function found(name: string): Item {
        tryVerify(() => find(name) !== null && find(name).visible, 5000, name + " shows");
        return find(name);
    }

    /// What shows below this item, itself included, first to last.
    function shown(item) {
        if (!item || !item.visible)
            return [];
        let items = [item];
        for (let i = 0; i < item.children.length; ++i)
            items = items.concat(shown(item.children[i]));
        return items;
    }

    /// The texts that show, one a line.
    function texts(item): string {
        return shown(item).filter(child => child.lineCount !== undefined && child.text !== "").map(child => child.text).join("\n");
    }

    function withText(item, text: string): Item {
        const matches = shown(item).filter(child => child.lineCount !== undefined && child.text === text);
        verify(matches.length > 0, "\"" + text + "\" shows");
        return matches[0];
    }

    /// The symbols that show, by name.
    function symbols(item): string {
        return shown(item).filter(child => child.name !== undefined && child.size !== undefined).map(child => child.name).join(" ");
    }

    function withRole(item, role: int) {
        return shown(item).filter(child => child.Accessible.role === role);
    }

    /// Where an item is, in the coordinates of another.
    function placeOf(item: Item, other: Item): rect {
        const place = item.mapToItem(other, 0, 0);
        return Qt.rect(place.x, place.y, item.width, item.height);
    }

    /// What is painted of an item. (grabImage() takes its place in its parent for that in the window.)
    function painted(item: Item) {
        const image = grabImage(root.Window.contentItem);
        const place = item.mapToItem(root.Window.contentItem, 0, 0);
        return { pixel: (x, y) => image.pixel(place.x + x, place.y + y) };
    }

    function type(text: string) {
        for (const character of text)
            keyClick(character);
    }

    function addAndFinish(name: string) {
        const ended = stage.app.tasks.count + 1;
        stage.app.handleDrop([stage.file(name)]);
        tryVerify(() => !stage.app.appState.compressionQueue.hasActiveTasks && stage.app.tasks.count === ended);
    }

    /// The names of the controls that Tab goes through, until it is back where it began.
    function tabOrder() {
        const names = [];
        const first = root.Window.activeFocusItem;
        for (let i = 0; i < 60; ++i) {
            keyClick(Qt.Key_Tab);
            const item = root.Window.activeFocusItem;
            // Qt keeps the name of a field for passwords to itself.
            names.push(item.Accessible.passwordEdit ? item.placeholderText : item.Accessible.name);
            if (item === first)
                break;
        }
        return names;
    }
}
