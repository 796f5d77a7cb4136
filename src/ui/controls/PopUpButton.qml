// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Pixpress

/// A button that shows one choice of several and opens their list.
T.ComboBox {
    id: root

    required property string label ///< What is chosen; for assistive technology.
    property string hint: "" ///< What the choice means; for assistive technology.
    /// Of the list, which is not made before it is opened.
    readonly property bool accessibleExpanded: down && popup.opened

    implicitWidth: Theme.scaled(140)
    implicitHeight: Theme.regularControl
    leftPadding: mirrored ? 4 : 10
    rightPadding: mirrored ? 10 : 4
    focusPolicy: Qt.StrongFocus
    font: Theme.body
    opacity: enabled ? 1 : 0.45

    Accessible.role: Accessible.ComboBox
    Accessible.name: label
    Accessible.description: hint === "" ? displayText : `${displayText}. ${hint}`
    Accessible.onPressAction: {
        forceActiveFocus(Qt.OtherFocusReason);
        popup.open();
    }

    contentItem: Text {
        leftPadding: root.mirrored ? Theme.scaled(13) + 7 : 0
        rightPadding: root.mirrored ? 0 : Theme.scaled(13) + 7
        text: root.displayText
        font: root.font
        color: Theme.primary
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        verticalAlignment: Text.AlignVCenter
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
    indicator: Symbol {
        x: root.mirrored ? 6 : root.width - width - 6
        y: (root.height - height) / 2
        name: "chevron.up.chevron.down"
        color: Theme.secondary
        size: Theme.scaled(13)
    }
    background: Box {
        radius: Theme.controlRadius
        color: root.down ? Theme.controlPressed : Theme.controlFill
        borderWidth: 1
        borderColor: Theme.controlBorder

        FocusRing {
            visible: root.visualFocus
        }
    }
    delegate: T.ItemDelegate {
        id: choice

        required property int index
        required property string modelData
        readonly property color contentColor: highlighted ? Theme.onAccent : Theme.primary

        width: ListView.view?.width ?? 0
        implicitHeight: Theme.regularControl
        text: modelData
        highlighted: root.highlightedIndex === index
        Accessible.role: Accessible.ListItem
        Accessible.name: modelData
        Accessible.focusable: true
        Accessible.focused: root.popup.opened && highlighted
        Accessible.selectable: true
        Accessible.selected: index === root.currentIndex

        onHighlightedChanged: {
            if (highlighted && root.popup.opened)
                Accessibility.moveTo(choice);
        }
        Accessible.onPressAction: choice.clicked()

        contentItem: Item {
            Symbol {
                anchors.left: parent.left
                anchors.leftMargin: 4
                anchors.verticalCenter: parent.verticalCenter
                visible: choice.index === root.currentIndex
                name: "checkmark"
                color: choice.contentColor
                size: Theme.scaled(13)
            }
            Text {
                anchors.left: parent.left
                anchors.leftMargin: Theme.scaled(13) + 9
                anchors.right: parent.right
                anchors.rightMargin: 6
                anchors.verticalCenter: parent.verticalCenter
                text: choice.text
                font: root.font
                color: choice.contentColor
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignLeft
                textFormat: Text.PlainText
            }
        }
        background: Box {
            radius: 4
            color: choice.highlighted ? Theme.accentFill : "transparent"
        }
    }
    popup: T.Popup {
        y: root.height + 3
        width: root.width
        implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
        margins: 6
        padding: 5

        // The keys go on to the button: it keeps the focus.
        onOpened: Accessibility.moveTo(choices.currentItem)
        onClosed: Accessibility.moveTo(root)
        Component.onCompleted: contentItem.parent.Accessible.ignored = true // it is no dialog

        contentItem: ListView {
            id: choices

            implicitHeight: contentHeight
            model: root.popup.visible ? root.delegateModel : null
            currentIndex: root.highlightedIndex
            interactive: false
            Accessible.role: Accessible.List
            Accessible.name: root.label
        }
        background: Box {
            radius: 7
            color: Theme.menuBackground
            borderWidth: 1
            borderColor: Theme.controlBorder
        }
    }
}
