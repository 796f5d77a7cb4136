// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Pixpress

/// The tasks, and above them a line that sums them up.
ColumnLayout {
    id: root

    required property PixpressApp app
    property string outcome ///< Of the work that has ended; for assistive technology.

    function takeFocus() {
        list.isQuiet = !list.activeFocus;
        list.forceActiveFocus(Qt.OtherFocusReason);
    }

    function tellOutcome() {
        outcome = app.tasks.outcomeText;
        if (outcome !== "")
            Accessibility.announce(announcement);
    }

    spacing: 0

    Component.onCompleted: tellOutcome()

    Connections {
        target: root.app.tasks

        function onWorkEnded() {
            root.tellOutcome();
        }
    }

    RowLayout {
        spacing: 8
        Layout.fillWidth: true
        Layout.leftMargin: 16
        Layout.rightMargin: 16
        Layout.topMargin: 8
        Layout.bottomMargin: 8

        Text {
            objectName: "progress"
            text: root.app.tasks.progressText
            font: Theme.caption
            color: Theme.secondary
            textFormat: Text.PlainText
            Accessible.role: Accessible.StaticText
            Accessible.name: text

            Item {
                id: announcement

                anchors.fill: parent
                Accessible.role: Accessible.Notification
                Accessible.name: root.outcome
                Accessible.ignored: root.outcome === "" || root.app.appState.compressionQueue.hasActiveTasks
            }
        }
        Text {
            visible: totalSaved.visible
            text: "·"
            font: Theme.caption
            color: Theme.tertiary
            Accessible.ignored: true
        }
        Text {
            id: totalSaved

            objectName: "totalSaved"
            visible: text !== ""
            text: root.app.tasks.totalSavedText
            font: Theme.captionMedium
            color: Theme.greenText
            textFormat: Text.PlainText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Item {
            implicitHeight: Theme.scaled(14)
            Layout.fillWidth: true
        }
        ActivityIndicator {
            objectName: "activity"
            visible: root.app.appState.compressionQueue.hasActiveTasks
            size: Theme.scaled(12)
        }
    }

    Divider {
        Layout.fillWidth: true
    }

    ListView {
        id: list

        /// It has got the keyboard by the pointer, or without anybody's asking for it: until a key
        /// is pressed no ring is drawn.
        property bool isQuiet: false
        readonly property real pixelRatio: Screen.devicePixelRatio

        objectName: "rows"
        model: root.app.tasks
        topMargin: 8
        bottomMargin: 8
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: true
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightMoveVelocity: -1
        highlightMoveDuration: Theme.duration // of the list, when the current row is out of sight
        currentIndex: -1
        Layout.fillWidth: true
        Layout.fillHeight: true
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Images")

        T.ScrollBar.vertical: OverlayScrollBar {}

        onActiveFocusChanged: {
            if (activeFocus && currentIndex < 0)
                currentIndex = 0;
            if (!activeFocus)
                isQuiet = false;
        }

        Keys.onPressed: event => {
            isQuiet = false;
            event.accepted = false;
        }

        delegate: TaskRowView {
            width: list.width
            pixelRatio: list.pixelRatio
            isLast: index === list.count - 1
            isCurrent: ListView.isCurrentItem && list.activeFocus
            thumbnails: root.app.thumbnails
            onRetry: {
                list.currentIndex = index;
                list.currentItem.forceActiveFocus(Qt.OtherFocusReason); // its button goes
                root.app.retry(index);
            }
            onReveal: root.app.reveal(outputURL)
            onPressed: {
                list.currentIndex = index;
                list.isQuiet = true;
                list.forceActiveFocus(Qt.MouseFocusReason);
            }
        }

        FocusRing { // so much larger than the row's content that it touches neither it nor the lines
            readonly property TaskRowView row: list.currentItem as TaskRowView

            parent: row
            anchors.fill: null
            x: 13
            y: -2
            width: row ? row.width - 2 * x : 0
            height: row ? row.contentHeight + 4 : 0
            visible: row !== null && row.isCurrent && !list.isQuiet
        }
    }
}
