// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// Replaces and checks the key.
ColumnLayout {
    id: root

    required property PixpressApp app
    property alias apiKeyInput: field.text
    property string validationMessage
    property bool isValid: false
    readonly property alias isValidating: validation.isValidating
    property bool isCheckReported: true ///< The outcome of the check that runs is waited for.

    function reportCheck(message: string, good: bool) {
        if (isCheckReported)
            report(message, good);
    }

    function report(message: string, good: bool) {
        validationMessage = ""; // so that it shows anew, also when it says the same again
        validationMessage = message;
        isValid = good;
    }

    objectName: "keyTab"
    spacing: 16

    KeyValidation {
        id: validation

        app: root.app
        onFinished: isValid => root.reportCheck(isValid ? qsTr("API key is valid") : qsTr("Invalid API key"), isValid)
        onFailed: description => root.reportCheck(qsTr("Validation failed: %1").arg(description), false)
    }

    FormSection {
        title: qsTr("TinyPNG API Key")
        Layout.fillWidth: true

        FormRow {
            TextEntry {
                id: field

                objectName: "apiKey"
                width: parent.width
                text: root.app.storedKey()
                placeholderText: qsTr("API Key")
                echoMode: TextInput.Password
                isCode: true
                focus: true
            }
        }
        FormRow {
            RowLayout {
                width: parent.width
                spacing: 8

                PushButton {
                    objectName: "saveKey"
                    text: qsTr("Save Key")
                    enabled: root.apiKeyInput !== ""
                    onClicked: {
                        root.app.saveAPIKey(root.apiKeyInput);
                        root.isCheckReported = false;
                        root.report(qsTr("Key saved successfully"), true);
                    }
                }
                PushButton {
                    objectName: "validate"
                    text: qsTr("Validate")
                    enabled: root.apiKeyInput !== "" && !root.isValidating
                    onClicked: {
                        if (activeFocus)
                            field.forceActiveFocus(); // a disabled button cannot keep the keyboard
                        root.report("", false);
                        root.isCheckReported = true;
                        validation.start(root.apiKeyInput);
                    }
                }
                ActivityIndicator {
                    objectName: "checking"
                    visible: root.isValidating
                }
                Item {
                    Layout.fillWidth: true
                }
                SymbolLabel {
                    objectName: "message"
                    visible: root.validationMessage !== ""
                    symbol: root.isValid ? "checkmark.circle.fill" : "xmark.circle.fill"
                    text: root.validationMessage
                    font: Theme.caption
                    color: root.isValid ? Theme.greenText : Theme.redText
                    wrapMode: Text.Wrap
                    // As wide as its text where there is room, so that it ends where the row does.
                    Layout.fillWidth: true
                    Layout.preferredWidth: implicitWidth
                    Layout.maximumWidth: implicitWidth
                    Accessible.role: Accessible.Notification // read out when it shows
                }
            }
        }
    }

    FormSection {
        Layout.fillWidth: true

        FormRow {
            Flow {
                width: parent.width
                spacing: 4

                Text {
                    id: offer

                    text: qsTr("Get your free key (500 compressions/month) at")
                    font: Theme.caption
                    color: Theme.secondary
                    textFormat: Text.PlainText
                    Accessible.ignored: true // half a sentence: the link has it for its description
                }
                LinkLabel {
                    Accessible.description: offer.text
                    text: About.developersTitle
                    page: About.developersPage
                }
            }
        }
    }

    Item {
        Layout.fillHeight: true
    }
}
