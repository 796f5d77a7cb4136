// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Not "pragma ComponentBehavior: Bound": a Loader of Qt 6.4 cannot make bound components.
// qmllint disable unqualified

import QtQuick
import Pixpress

/// One task: its picture, name and size, where it stands, and what can be done with it. Below it
/// the line that parts it from the next.
Item {
    id: root

    required property int index
    required property string fileName
    required property url sourceURL
    required property string originalSize
    required property int taskState
    required property string statusText
    required property string statusSymbol
    required property string savings
    required property string saved
    required property url outputURL
    required property string summary

    required property Thumbnails thumbnails
    required property bool isLast
    required property bool isCurrent ///< The keyboard is on this row.
    property real pixelRatio: Screen.devicePixelRatio ///< Of the list's; it takes long to be asked for.
    readonly property real contentHeight: row.height ///< Without the line below.

    /// The summary at the end of a turn of the event loop, so that a status that is passed through
    /// and never seen is not told either.
    property string told

    readonly property bool isCompleted: taskState === TaskModel.State.completed
    readonly property bool isFailed: taskState === TaskModel.State.failed
    readonly property bool isPending: taskState === TaskModel.State.pending
    readonly property bool isRunning: !isCompleted && !isFailed && !isPending

    signal retry
    signal reveal
    signal pressed ///< By the pointer.

    function tell() {
        told = summary;
    }

    function act() {
        if (isCompleted)
            reveal();
        else if (isFailed)
            retry();
    }

    /// Called when a button of the row is pressed; `isByKey` if the focus is visible on it.
    function takePress(isByKey: bool) {
        if (!isByKey)
            pressed();
    }

    function openMenu(isByKey: bool) {
        if (!isCompleted && !isFailed)
            return;
        const opened = menu.createObject(root) as ContextMenu;
        if (isByKey)
            opened.openAt(root, 68, row.height); // below the name
        else
            opened.openAtPointer();
    }

    function statusColor(): color {
        switch (taskState) {
        case TaskModel.State.uploading:
        case TaskModel.State.downloading:
            return Theme.blueText;
        case TaskModel.State.compressing:
            return Theme.orangeText;
        case TaskModel.State.failed:
            return Theme.redText;
        default:
            return Theme.secondary;
        }
    }

    // A whole number of the screen's pixels, or every other row's line would be twice as wide.
    implicitHeight: Math.ceil((row.height + (isLast ? 0 : 5)) * pixelRatio) / pixelRatio

    onSummaryChanged: Qt.callLater(tell)
    Component.onCompleted: tell()

    Accessible.role: Accessible.ListItem
    Accessible.name: told
    Accessible.focusable: true
    Accessible.focused: isCurrent
    Accessible.onPressAction: act()

    Keys.onReturnPressed: act()
    Keys.onEnterPressed: act()
    Keys.onSpacePressed: act()
    Keys.onMenuPressed: root.openMenu(true)

    // The list's own colour once more. It ends what changed at each row: without it the software
    // renderer adds up the rectangles of all texts in view, which takes it longer than to paint.
    Rectangle {
        anchors.fill: parent
        color: Theme.contentBackground
    }

    TapHandler {
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        gesturePolicy: TapHandler.DragThreshold
        onTapped: (point, button) => {
            root.pressed();
            if (button === Qt.RightButton)
                root.openMenu(false);
        }
    }

    // Anchors, since layouts take longer to be made, and rows are made while the list scrolls.
    Item {
        id: row

        x: 16 + 4
        width: parent.width - 2 * x
        height: Math.max(thumbnail.height, texts.height, trailing.height) + 12

        ThumbnailView {
            id: thumbnail

            anchors.left: parent.left
            anchors.verticalCenter: parent.verticalCenter
            url: root.sourceURL
            thumbnails: root.thumbnails
        }

        // Each text gets its width before it is laid out: what stands later in this file, or has no
        // anchors at both sides, has its own first.
        Item {
            id: texts

            anchors.left: thumbnail.right
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            width: row.width - thumbnail.width - 12 - 24 - trailing.width - trailing.anchors.rightMargin
            height: fileName.height + 3 + Math.max(originalSize.height, statusLabel.height)

            Text {
                id: fileName

                objectName: "fileName"
                width: parent.width
                text: root.fileName
                font: Theme.bodyMedium
                color: Theme.primary
                elide: Text.ElideMiddle
                horizontalAlignment: Text.AlignLeft
                maximumLineCount: 1
                textFormat: Text.PlainText
            }
            SymbolLabel {
                id: statusLabel

                objectName: "status"
                anchors.left: originalSize.right
                anchors.leftMargin: 4
                anchors.bottom: parent.bottom
                width: parent.width - originalSize.width - 4
                symbol: root.statusSymbol
                text: root.statusText
                font: Theme.caption
                color: root.statusColor()
                Accessible.ignored: true
            }
            Text {
                id: originalSize

                anchors.left: parent.left
                anchors.verticalCenter: statusLabel.verticalCenter
                text: root.originalSize
                font: Theme.caption
                color: Theme.secondary
                textFormat: Text.PlainText
            }
        }

        Loader {
            id: trailing

            anchors.right: parent.right
            anchors.rightMargin: root.isRunning ? 4 : 0
            anchors.verticalCenter: parent.verticalCenter
            sourceComponent: {
                if (root.isCompleted)
                    return savings;
                if (root.isFailed)
                    return retryButton;
                return root.isPending ? clock : activity;
            }
        }
    }

    Component {
        id: clock

        Symbol {
            name: "clock"
            size: Theme.scaled(16)
            color: Theme.secondary
        }
    }
    Component {
        id: activity

        ActivityIndicator {
            Accessible.ignored: true // the row's name tells it
        }
    }
    Component {
        id: retryButton

        PushButton {
            objectName: "retry"
            text: qsTr("Retry")
            controlHeight: Theme.smallControl
            focusPolicy: root.isCurrent || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
            onPressed: root.takePress(visualFocus)
            onClicked: root.retry()

            HoverHandler {
                id: pointer

                parent: statusLabel
            }
            HelpTip { // what the row has no room for
                objectName: "wholeFailure"
                parent: statusLabel
                text: root.statusText
                shown: pointer.hovered && statusLabel.truncated
            }
        }
    }
    Component {
        id: savings

        Item {
            implicitWidth: Math.max(percentage.width, saved.width) + 10 + reveal.width
            implicitHeight: Math.max(percentage.height + 2 + saved.height, reveal.height)

            Text {
                id: percentage

                objectName: "savings"
                anchors.right: reveal.left
                anchors.rightMargin: 10
                y: Math.round((parent.height - height - 2 - saved.height) / 2)
                text: root.savings
                font: Theme.title3
                color: Theme.greenText
                textFormat: Text.PlainText
            }
            Text {
                id: saved

                objectName: "saved"
                anchors.right: percentage.right
                anchors.top: percentage.bottom
                anchors.topMargin: 2
                text: root.saved
                font: Theme.caption2
                color: Theme.secondary
                textFormat: Text.PlainText
            }
            RevealButton {
                id: reveal

                objectName: "reveal"
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                focusPolicy: root.isCurrent || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
                onPressed: root.takePress(visualFocus)
                onClicked: root.reveal()
            }
        }
    }

    Divider {
        x: 16
        y: root.height - 3
        width: parent.width - 32
        pixelRatio: root.pixelRatio
        visible: !root.isLast
    }

    Component {
        id: menu

        ContextMenu {
            modal: true // so that the list does not scroll away below it
            dim: false
            onClosed: destroy()

            ContextMenuItem {
                text: root.isCompleted ? qsTr("Show in Finder") : qsTr("Retry")
                onTriggered: root.act()
            }
        }
    }
}
