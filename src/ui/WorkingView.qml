// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Not "pragma ComponentBehavior: Bound": a Loader of Qt 6.4 cannot make bound components.
// qmllint disable unqualified

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Pixpress

/// The working layout: toolbar, options at the side, drop zone or list, and the quota below.
Item {
    id: root

    required property PixpressApp app
    readonly property bool isDropTargeted: dropTarget.isTargeted && !app.isPanelOpen

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        ToolbarView {
            app: root.app
            sidebarShown: sidebar.visible
            onSidebarToggled: sidebar.visible = !sidebar.visible
            onClearedDone: list.item?.takeFocus() // which the button, disabled now, cannot keep
            Layout.fillWidth: true
        }

        Divider {
            Layout.fillWidth: true
        }

        T.SplitView {
            id: split

            orientation: Qt.Horizontal
            LayoutMirroring.enabled: false // that of Qt 6.4 cannot: the sidebar is moved instead
            Layout.fillWidth: true
            Layout.fillHeight: true

            Component.onCompleted: {
                if (root.LayoutMirroring.enabled)
                    moveItem(0, 1);
            }

            handle: Box {
                implicitWidth: 1
                color: Theme.separator
                containmentMask: Item { // wider than the line, so that it can be taken hold of
                    x: -3
                    width: 7
                    height: split.height
                }
            }

            CompressionOptionsView {
                id: sidebar

                /// By larger text, for the longest choice.
                readonly property int widening: Theme.scaled(156) - 156

                options: root.app.options
                T.SplitView.minimumWidth: 230 + widening
                T.SplitView.preferredWidth: 260 + widening
                T.SplitView.maximumWidth: 300 + widening
            }

            Rectangle {
                color: Theme.contentBackground
                T.SplitView.fillWidth: true

                ColumnLayout {
                    anchors.fill: parent
                    spacing: 0

                    Loader {
                        id: dropZone

                        active: !list.visible // until then, or there would be nothing for a moment
                        visible: active
                        sourceComponent: DropZoneView {
                            app: root.app
                            isTargeted: root.isDropTargeted
                        }
                        Layout.fillWidth: true
                        Layout.fillHeight: true
                    }

                    LateView {
                        id: list

                        view: "TaskListView"
                        initial: ({
                            app: root.app
                        })
                        // Who was at work elsewhere stays there, also while another window, which
                        // the files come from, is the active one.
                        onLoaded: {
                            if (dropZone.focus)
                                list.item?.takeFocus();
                        }
                        asynchronous: true // so that a drop of thousands does not hold the window up
                        active: root.app.tasks.count > 0
                        visible: status === Loader.Ready
                        Layout.fillWidth: true
                        Layout.fillHeight: true
                    }

                    Divider {
                        visible: !root.app.isOffline
                        Layout.fillWidth: true
                    }

                    QuotaBarView {
                        visible: !root.app.isOffline
                        quotaTracker: root.app.appState.quotaTracker
                        Layout.fillWidth: true
                        Layout.leftMargin: 16
                        Layout.rightMargin: 16
                        Layout.topMargin: 10
                        Layout.bottomMargin: 10
                    }
                }
            }
        }
    }

    DropTarget {
        id: dropTarget

        app: root.app
    }

    LateView {
        id: settings

        anchors.fill: parent
        view: "SettingsSheet"
        initial: ({
            app: root.app
        })
        active: false
    }

    Connections {
        target: settings.item
        ignoreUnknownSignals: true // which the linter cannot know of an item that comes later

        function onClosed() {
            settings.active = false;
            settings.active = root.app.appState.showSettings;
        }
    }

    Connections {
        target: root.app.appState

        function onShowSettingsChanged() {
            if (root.app.appState.showSettings)
                settings.active = true;
        }
    }

    Component.onCompleted: settings.active = root.app.appState.showSettings
}
