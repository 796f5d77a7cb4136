// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma Singleton

import QtQuick
import Pixpress

/// Colours, text styles and measures by their role. Lengths are logical pixels.
QtObject {
    readonly property bool dark: Appearance.dark

    // Accents, for shapes. Where one carries text, take its darker or lighter sister below: these
    // are too faint to be read at small sizes.
    readonly property color blue: dark ? "#0A84FF" : "#007AFF"
    readonly property color green: dark ? "#32D74B" : "#28CD41"
    readonly property color orange: dark ? "#FF9F0A" : "#FF9500"
    readonly property color red: dark ? "#FF453A" : "#FF3B30"
    readonly property color purple: dark ? "#BF5AF2" : "#AF52DE"
    readonly property color gray: dark ? "#98989D" : "#8E8E93"

    readonly property color blueText: dark ? "#4FA8FF" : "#005FCC"
    readonly property color greenText: dark ? "#32D74B" : "#177A2B"
    readonly property color orangeText: dark ? "#FF9F0A" : "#A84A00"
    readonly property color redText: dark ? "#FF7A70" : "#C9151B"
    readonly property color purpleText: dark ? "#D28CFF" : "#8A2FBA"
    readonly property color grayText: dark ? "#B0B0B5" : "#5F5F64"

    // The foreground in four strengths; the faintest is for fills only.
    readonly property color primary: dark ? "#D9FFFFFF" : "#D9000000"
    readonly property color secondary: dark ? "#A8FFFFFF" : "#A0000000"
    readonly property color tertiary: dark ? "#94FFFFFF" : "#92000000"
    readonly property color quaternary: dark ? "#1AFFFFFF" : "#1A000000"

    readonly property color windowBackground: dark ? "#1E1E1E" : "#ECECEC"
    readonly property color contentBackground: dark ? "#262626" : "#FFFFFF"
    readonly property color sidebarBackground: dark ? "#242424" : "#F5F5F5"
    readonly property color groupBackground: dark ? "#2E2E2E" : "#FFFFFF"
    readonly property color menuBackground: dark ? "#323232" : "#FAFAFA"
    readonly property color separator: dark ? "#1AFFFFFF" : "#1A000000"
    readonly property color dimming: dark ? "#80000000" : "#40000000"

    readonly property color accentFill: dark ? "#0A6CDD" : "#0067D9"
    readonly property color onAccent: "#FFFFFF"
    readonly property color selection: dark ? "#1F4A7D" : "#B3D7FF"
    readonly property color controlFill: dark ? "#484848" : "#FFFFFF"
    readonly property color controlPressed: dark ? "#5A5A5A" : "#E4E4E4"
    readonly property color controlBorder: dark ? "#26FFFFFF" : "#2E000000"
    readonly property color fieldFill: dark ? "#1B1B1B" : "#FFFFFF"
    readonly property color switchTrack: dark ? "#6A6A6E" : "#B4B4B8"
    readonly property color switchKnob: "#FFFFFF"
    readonly property color switchKnobPressed: "#F2F2F2"
    readonly property color switchKnobBorder: "#14000000"
    readonly property color focusRing: Qt.rgba(blue.r, blue.g, blue.b, 0.5)

    readonly property string family: Appearance.family
    readonly property font largeTitle: Qt.font({ family: family, pixelSize: 26, weight: Font.Bold })
    readonly property font title: Qt.font({ family: family, pixelSize: 22, weight: Font.Bold })
    readonly property font title2: Qt.font({ family: family, pixelSize: 17, weight: Font.DemiBold })
    // What a row has saved, meant for a rounded face: there is none that systems here come with, so
    // it is the ordinary one.
    readonly property font title3: Qt.font({ family: family, pixelSize: 15, weight: Font.Bold })
    readonly property font headline: Qt.font({ family: family, pixelSize: 13, weight: Font.Bold })
    readonly property font body: Qt.font({ family: family, pixelSize: 13 })
    readonly property font bodyMedium: Qt.font({ family: family, pixelSize: 13, weight: Font.Medium })
    readonly property font bodyMonospaced: Qt.font({ family: Appearance.fixedFamily, pixelSize: 13 })
    readonly property font subheadline: Qt.font({ family: family, pixelSize: 11 })
    readonly property font subheadlineMedium: Qt.font({ family: family, pixelSize: 11, weight: Font.Medium })
    readonly property font caption: Qt.font({ family: family, pixelSize: 10 })
    readonly property font captionMedium: Qt.font({ family: family, pixelSize: 10, weight: Font.Medium })
    readonly property font captionMonospaced: Qt.font({
        family: Appearance.fixedFamily,
        pixelSize: 10,
        weight: Font.DemiBold
    })
    readonly property font caption2: Qt.font({ family: family, pixelSize: 10 })
    readonly property font tileLabel: Qt.font({ family: family, pixelSize: 10, weight: Font.Bold })

    readonly property int bodySize: 13
    readonly property int calloutSize: 12
    readonly property int captionSize: 10

    readonly property int smallControl: 20
    readonly property int regularControl: 24
    readonly property int largeControl: 30
    readonly property int controlRadius: 6
    readonly property int groupRadius: 8
    readonly property int rowHeight: 36
    readonly property int padding: 16 ///< The platform's default around a view.

    /// Of a movement or fade, in milliseconds.
    readonly property int duration: Appearance.reducedMotion ? 0 : 200
}
