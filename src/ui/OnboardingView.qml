// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Pixpress

/// Welcomes the user and asks for the key, which the service has to accept.
Flickable {
    id: root

    required property PixpressApp app
    property alias apiKeyInput: field.text
    property string errorMessage
    readonly property string key: validation.trimmed(apiKeyInput)
    readonly property alias isValidating: validation.isValidating

    function validate() {
        if (key === "" || isValidating)
            return;
        errorMessage = "";
        field.forceActiveFocus(); // the button cannot keep the keyboard while it is disabled
        validation.start(key);
    }

    contentWidth: width
    contentHeight: Math.max(height, column.implicitHeight) // more only of large text
    interactive: contentHeight > height
    boundsBehavior: Flickable.StopAtBounds

    T.ScrollBar.vertical: OverlayScrollBar {}

    Component.onCompleted: field.forceActiveFocus()

    FocusReveal {
        flickable: root
    }

    KeyValidation {
        id: validation

        app: root.app
        onFinished: isValid => {
            if (!isValid)
                root.errorMessage = qsTr("Invalid API key — please check and try again.");
        }
        onFailed: description => root.errorMessage = qsTr("Could not validate: %1").arg(description)
    }

    TextMetrics {
        id: startText

        text: qsTr("Get Started")
        font: Theme.body
    }

    Shortcut {
        sequences: ["Return", "Enter"]
        onActivated: root.validate()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.windowBackground
    }

    ColumnLayout {
        id: column

        anchors.fill: parent
        spacing: 0

        Item {
            Layout.fillHeight: true
        }

        ColumnLayout {
            spacing: 14
            Layout.fillWidth: true

            Image {
                source: "logo.svg"
                sourceSize.width: 88
                sourceSize.height: 88
                Layout.alignment: Qt.AlignHCenter
                Accessible.ignored: true
            }
            Text {
                text: qsTr("Welcome to Pixpress")
                font: Theme.largeTitle
                color: Theme.primary
                horizontalAlignment: Text.AlignHCenter
                textFormat: Text.PlainText
                Layout.fillWidth: true
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Column {
                spacing: 3
                Layout.alignment: Qt.AlignHCenter

                Repeater {
                    // A line each: Text knows line heights, but not space between lines alone.
                    model: qsTr("Compress PNG, JPEG, WebP, and AVIF images\nusing the TinyPNG API — up to 500 free per month.").split("\n")

                    Text {
                        required property string modelData

                        anchors.horizontalCenter: parent?.horizontalCenter
                        text: modelData
                        font: Theme.subheadline
                        color: Theme.secondary
                        textFormat: Text.PlainText
                        Accessible.role: Accessible.StaticText
                        Accessible.name: text
                    }
                }
            }
        }

        Item {
            implicitHeight: 40
        }

        Item {
            implicitHeight: card.implicitHeight + 48
            Layout.fillWidth: true
            Layout.maximumWidth: Theme.scaled(480)
            Layout.leftMargin: 20
            Layout.rightMargin: 20
            Layout.alignment: Qt.AlignHCenter

            Shadow {
                anchors.fill: parent
                anchors.margins: -12 // the blur
                anchors.topMargin: -12 + 4
                anchors.bottomMargin: -12 - 4
                radius: 14
                blur: 12
                color: "#14000000"
            }
            Box {
                objectName: "card"
                anchors.fill: parent
                radius: 14
                color: Theme.contentBackground
            }

            ColumnLayout {
                id: card

                anchors.fill: parent
                anchors.margins: 24
                spacing: 16

                ColumnLayout {
                    spacing: 6
                    Layout.fillWidth: true

                    SymbolLabel {
                        id: title

                        Accessible.ignored: true // the field below has it for its name
                        symbol: "key.fill"
                        text: qsTr("TinyPNG API Key")
                        font: Theme.headline
                        spacing: 6
                    }
                    CaptionText {
                        text: qsTr("Each user needs their own free API key. It only takes 30 seconds to get one.")
                        Layout.fillWidth: true
                    }
                }

                RowLayout {
                    spacing: 10
                    Layout.fillWidth: true

                    TextEntry {
                        id: field

                        objectName: "key"
                        label: title.text
                        placeholderText: qsTr("Paste your API key here…")
                        echoMode: TextInput.Password
                        isCode: true
                        Layout.fillWidth: true
                    }
                    PushButton {
                        objectName: "getStarted"
                        prominent: true
                        isBusy: root.isValidating
                        text: root.isValidating ? "" : startText.text
                        enabled: root.key !== "" && !root.isValidating
                        // 80 for the content unless it is longer, and 12 at each side
                        Layout.preferredWidth: Math.ceil(Math.max(Theme.scaled(80), startText.advanceWidth)) + 24
                        Accessible.name: startText.text
                        onClicked: root.validate()

                        ActivityIndicator {
                            anchors.centerIn: parent
                            visible: root.isValidating
                            color: Theme.onAccent
                        }
                    }
                }

                SymbolLabel {
                    objectName: "error"
                    visible: root.errorMessage !== ""
                    symbol: "exclamationmark.triangle.fill"
                    text: root.errorMessage
                    font: Theme.caption
                    color: Theme.redText
                    wrapMode: Text.Wrap
                    Layout.fillWidth: true
                    Accessible.role: Accessible.Notification // read out when it shows
                }

                Divider {
                    Layout.fillWidth: true
                }

                RowLayout {
                    spacing: 8
                    Layout.fillWidth: true

                    SymbolLabel {
                        symbol: "info.circle"
                        spacing: 8
                        text: qsTr("Don't have a key yet?")
                        font: Theme.caption
                        color: Theme.secondary
                    }
                    LinkLabel {
                        text: qsTr("Get a free API key at %1 →").arg(About.developersHost)
                        page: About.developersPage
                        Layout.fillWidth: true
                        Layout.preferredWidth: Math.ceil(implicitWidth)
                        Layout.maximumWidth: Math.ceil(implicitWidth)
                    }
                    Item {
                        Layout.fillWidth: true
                    }
                }
            }
        }

        Item {
            Layout.fillHeight: true
        }

        Row {
            bottomPadding: 24
            Layout.alignment: Qt.AlignHCenter

            CreditsText {
                credits: qsTr("Built with ❤️ by ")
                font: Theme.caption
                color: Theme.tertiary
            }
            Text {
                text: About.authorName
                font: Theme.caption
                color: Theme.secondary
                textFormat: Text.PlainText
            }
        }
    }
}
