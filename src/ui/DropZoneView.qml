// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// Invites to drop images or to pick them, while there are no tasks.
Item {
    id: root

    required property PixpressApp app
    required property bool isTargeted ///< A drag with files hovers over the window.

    /// What had the keyboard before has gone: the key's view, or the list with what cleared it.
    Component.onCompleted: browse.forceActiveFocus(Qt.OtherFocusReason)

    DashedFrame {
        objectName: "outline"
        anchors.fill: parent
        anchors.margins: 20
        radius: 16
        lineWidth: 2.5
        dash: 10
        gap: 6
        color: root.isTargeted ? Theme.blue : Theme.outline

        Behavior on color {
            ColorAnimation {
                duration: Theme.duration
                easing.type: Easing.InOutQuad
            }
        }
    }

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width - 80
        spacing: 20

        Box {
            objectName: "badge"
            radius: 50
            smooth: true // it is shown enlarged
            color: Qt.rgba(Theme.blue.r, Theme.blue.g, Theme.blue.b, 0.1)
            scale: root.isTargeted ? 1.15 : 1
            Layout.preferredWidth: 100
            Layout.preferredHeight: 100
            Layout.alignment: Qt.AlignHCenter

            // A spring of a period of 0.3 s, damped to 0.825 of what lets it swing over: stiffness
            // (2π / 0.3)² and friction 2 · 0.825 · 2π / 0.3, both times the 0.016 s of a step.
            Behavior on scale {
                enabled: !Appearance.reducedMotion

                SpringAnimation {
                    spring: 7.02
                    damping: 0.553
                    epsilon: 0.001
                }
            }

            Symbol {
                anchors.centerIn: parent
                smooth: true
                name: "arrow.down.doc.fill"
                size: 46
                color: Theme.blue
                opacity: Theme.highContrast ? 1 : 0.7
            }
        }

        ColumnLayout {
            spacing: 8
            Layout.fillWidth: true

            Text {
                text: qsTr("Drop Images Here")
                font: Theme.title2
                color: Theme.primary
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Text {
                text: qsTr("PNG, JPEG, WebP, AVIF — up to 500 MB each")
                font: Theme.subheadline
                color: Theme.secondary
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                textFormat: Text.PlainText
                Layout.fillWidth: true
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }

        PushButton {
            id: browse

            objectName: "browse"
            text: qsTr("Choose Files")
            symbol: "folder"
            controlHeight: Theme.largeControl
            labelPadding: 8
            Layout.alignment: Qt.AlignHCenter
            onClicked: root.app.openFilePicker()
        }
    }
}
