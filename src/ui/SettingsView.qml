// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Pixpress

/// The content of the settings sheet: the key, the month's usage, and about the program. Offline
/// there is only the last.
Sheet {
    id: root

    required property PixpressApp app
    property alias tab: tabs.currentIndex

    title: app.isOffline ? qsTr("About") : qsTr("Settings")
    // Of large text there may be more than the window has room for.
    width: Math.min(Theme.scaled(480), (parent?.width ?? 520) - 40)
    height: Math.min(Theme.scaled(380), (parent?.height ?? 420) - 40)

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
                horizontalAlignment: Text.AlignLeft
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
            visible: !root.app.isOffline
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

        Flickable {
            id: page

            contentWidth: width
            contentHeight: Math.max(height, pages.children[pages.currentIndex].implicitHeight)
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: Theme.padding

            T.ScrollBar.vertical: OverlayScrollBar {}

            StackLayout {
                id: pages

                anchors.fill: parent
                anchors.rightMargin: page.interactive ? 12 : 0 // for the scroll bar
                currentIndex: root.app.isOffline ? 2 : tabs.currentIndex

                LateView {
                    view: "KeyTab"
                    initial: ({
                        app: root.app
                    })
                    active: !root.app.isOffline
                    focus: active
                }
                LateView {
                    view: "UsageTab"
                    initial: ({
                        quotaTracker: root.app.appState.quotaTracker
                    })
                    active: !root.app.isOffline
                }
                AboutTab {
                    app: root.app
                }
            }
        }

        FocusReveal {
            flickable: page
        }
    }
}
