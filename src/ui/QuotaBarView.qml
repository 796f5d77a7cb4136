// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Pixpress

/// How much of the month's allowance is used.
RowLayout {
    id: root

    required property QuotaTracker quotaTracker
    readonly property real usage: quotaTracker.currentCount / quotaTracker.monthlyLimit
    readonly property int remaining: Math.max(0, quotaTracker.monthlyLimit - quotaTracker.currentCount)
    readonly property color quotaColor: usage > 0.9 ? Theme.red : usage > 0.75 ? Theme.orange : Theme.blue

    spacing: 12
    Accessible.role: Accessible.Grouping
    Accessible.name: qsTr("Monthly Usage")

    Symbol {
        name: "chart.bar.fill"
        size: Math.round(Theme.calloutSize * 1.25)
        color: root.quotaColor
    }

    Item {
        id: bar

        objectName: "bar"
        implicitHeight: 8
        Layout.fillWidth: true
        Accessible.role: Accessible.ProgressBar
        Accessible.ignored: true // the texts beside it tell more

        Box {
            anchors.fill: parent
            radius: 4
            color: Theme.quaternary
            borderWidth: Theme.highContrast ? 1 : 0
            borderColor: Theme.separator
        }
        Box {
            objectName: "fill"
            anchors.left: parent.left
            width: Math.max(0, bar.width * root.usage) // beyond the track when the limit is passed
            height: parent.height
            radius: 4
            color: root.quotaColor
        }
    }

    Text {
        id: count

        objectName: "count"
        text: root.quotaTracker.currentCount + "/" + root.quotaTracker.monthlyLimit
        font: Theme.captionMonospaced
        color: Theme.primary
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Text {
        objectName: "remaining"
        text: qsTr("(%n left)", "", root.remaining)
        font: Theme.caption
        color: Theme.secondary
        textFormat: Text.PlainText
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    Box {
        implicitWidth: month.implicitWidth + 12
        implicitHeight: month.implicitHeight + 4
        radius: height / 2
        color: Theme.quaternary

        Text {
            id: month

            objectName: "month"
            anchors.centerIn: parent
            text: root.quotaTracker.monthYear
            font: Theme.caption2
            color: Theme.tertiary
            textFormat: Text.PlainText
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }
}
