// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// The month's usage as far as it is known here.
ColumnLayout {
    id: root

    required property QuotaTracker quotaTracker
    readonly property int remaining: Math.max(0, quotaTracker.monthlyLimit - quotaTracker.currentCount)

    spacing: 0

    FormSection {
        title: qsTr("Monthly Usage — %1").arg(root.quotaTracker.monthYear)
        spacing: 6
        Layout.fillWidth: true

        LabelledValue {
            objectName: "used"
            label: qsTr("Compressions Used")
            value: String(root.quotaTracker.currentCount)
        }
        LabelledValue {
            objectName: "limit"
            label: qsTr("Monthly Limit")
            value: String(root.quotaTracker.monthlyLimit)
        }
        LabelledValue {
            objectName: "remainingRow"
            label: qsTr("Remaining")
            value: String(root.remaining)
            valueColor: root.remaining < 50 ? Theme.redText : Theme.greenText
        }
        FormRow {
            QuotaBarView {
                width: parent.width
                quotaTracker: root.quotaTracker
            }
        }
    }

    FormSection {
        Layout.fillWidth: true
        Layout.topMargin: 8

        FormRow {
            Column {
                width: parent.width
                spacing: 6

                PushButton {
                    objectName: "reset"
                    anchors.left: parent.left
                    text: qsTr("Reset Local Counter")
                    onClicked: root.quotaTracker.reset()
                }
                CaptionText {
                    width: parent.width
                    text: qsTr("This only resets the local display. The actual count is tracked by TinyPNG's servers and synced on next compression.")
                }
            }
        }
    }

    Item {
        Layout.fillHeight: true
    }
}
