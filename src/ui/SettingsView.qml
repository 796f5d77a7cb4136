// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Pixpress

/// The content of the settings sheet: the key, the month's usage, and about the program.
Sheet {
    id: root

    required property PixpressApp app
    property alias tab: tabs.currentIndex

    title: qsTr("Settings")
    width: 480
    height: 380

    Shortcut {
        sequences: ["Return", "Enter"]
        onActivated: root.close()
    }

    contentItem: ColumnLayout {
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: Theme.padding

            Text {
                text: root.title
                font: Theme.title2
                color: Theme.primary
                textFormat: Text.PlainText
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            PushButton {
                objectName: "done"
                text: qsTr("Done")
                onClicked: root.close()
            }
        }

        Divider {
            Layout.fillWidth: true
        }

        SegmentedTabs {
            id: tabs

            objectName: "tabs"
            Layout.topMargin: Theme.padding
            Layout.alignment: Qt.AlignHCenter

            entries: [
                TabEntry {
                    text: qsTr("API Key")
                    symbol: "key"
                },
                TabEntry {
                    text: qsTr("Quota")
                    symbol: "chart.bar"
                },
                TabEntry {
                    text: qsTr("About")
                    symbol: "info.circle"
                }
            ]
        }

        StackLayout {
            currentIndex: tabs.currentIndex
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: Theme.padding

            KeyTab {
                app: root.app
            }
            UsageTab {
                quotaTracker: root.app.appState.quotaTracker
            }
            AboutTab {}
        }
    }
}
