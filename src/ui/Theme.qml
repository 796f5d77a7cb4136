// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

pragma Singleton

import QtQuick
import Pixpress

/// Colours, text styles and measures by their role. Lengths are logical pixels. What contains text
/// grows with it, by scaled().
QtObject {
    id: root

    readonly property bool dark: Appearance.dark
    readonly property bool highContrast: Appearance.highContrast

    // Accents, for shapes. Where one carries text, take its darker or lighter sister below: these
    // are too faint to be read at small sizes.
    readonly property color blue: highContrast ? blueText : dark ? "#0A84FF" : "#007AFF"
    readonly property color green: highContrast ? greenText : dark ? "#32D74B" : "#28CD41"
    readonly property color orange: highContrast ? orangeText : dark ? "#FF9F0A" : "#FF9500"
    readonly property color red: highContrast ? redText : dark ? "#FF453A" : "#FF3B30"
    readonly property color purple: highContrast ? purpleText : dark ? "#BF5AF2" : "#AF52DE"
    readonly property color gray: highContrast ? grayText : dark ? "#98989D" : "#8E8E93"

    readonly property color blueText: shade("#005FCC", "#4FA8FF", "#003C8F", "#A8D6FF")
    readonly property color greenText: shade("#177A2B", "#32D74B", "#0B4A18", "#6BE585")
    readonly property color orangeText: shade("#A84A00", "#FF9F0A", "#692E00", "#FFC870")
    readonly property color redText: shade("#C9151B", "#FF7A70", "#8A0006", "#FFB3AD")
    readonly property color purpleText: shade("#8A2FBA", "#D28CFF", "#581580", "#E4BCFF")
    readonly property color grayText: shade("#5F5F64", "#B0B0B5", "#3C3C40", "#D4D4D8")

    // The foreground in four strengths; the faintest is for fills only.
    readonly property color primary: shade("#D9000000", "#D9FFFFFF", "#000000", "#FFFFFF")
    readonly property color secondary: shade("#A0000000", "#A8FFFFFF", "#E0000000", "#E6FFFFFF")
    readonly property color tertiary: shade("#92000000", "#94FFFFFF", "#E0000000", "#E6FFFFFF")
    readonly property color quaternary: shade("#1A000000", "#1AFFFFFF", "#26000000", "#26FFFFFF")

    readonly property color windowBackground: dark ? "#1E1E1E" : "#ECECEC"
    readonly property color contentBackground: dark ? "#262626" : "#FFFFFF"
    readonly property color sidebarBackground: dark ? "#242424" : "#F5F5F5"
    readonly property color groupBackground: dark ? "#2E2E2E" : "#FFFFFF"
    readonly property color menuBackground: dark ? "#323232" : "#FAFAFA"
    readonly property color separator: shade("#1A000000", "#1AFFFFFF", "#8C000000", "#8CFFFFFF")
    readonly property color dimming: dark ? "#80000000" : "#40000000"
    /// Where files can be dropped.
    readonly property color outline: Qt.rgba(gray.r, gray.g, gray.b, highContrast ? 1 : 0.3)

    // What stands on the accent is dark where the accent is light, which it has to be to stand out
    // from a dark ground.
    readonly property color accentFill: shade("#0067D9", "#0A6CDD", "#003C8F", "#A8D6FF")
    readonly property color onAccent: shade("#FFFFFF", "#FFFFFF", "#FFFFFF", "#000000")
    readonly property color selection: dark ? "#1F4A7D" : "#B3D7FF"
    readonly property color controlFill: dark ? "#484848" : "#FFFFFF"
    readonly property color controlPressed: shade("#E4E4E4", "#5A5A5A", "#E4E4E4", "#525252")
    readonly property color controlBorder: shade("#2E000000", "#26FFFFFF", "#99000000", "#B3FFFFFF")
    readonly property color fieldFill: dark ? "#1B1B1B" : "#FFFFFF"
    readonly property color switchTrack: shade("#B4B4B8", "#6A6A6E", "#66666A", "#B8B8BC")
    readonly property color switchKnob: shade("#FFFFFF", "#FFFFFF", "#FFFFFF", "#000000")
    readonly property color switchKnobPressed: shade("#F2F2F2", "#F2F2F2", "#E0E0E0", "#2E2E2E")
    readonly property color switchKnobBorder: "#14000000"
    readonly property color focusRing: highContrast ? primary : Qt.rgba(blue.r, blue.g, blue.b, 0.5)

    readonly property string family: Appearance.family
    readonly property font largeTitle: Qt.font({ family: family, pixelSize: scaled(26), weight: Font.Bold })
    readonly property font title: Qt.font({ family: family, pixelSize: scaled(22), weight: Font.Bold })
    readonly property font title2: Qt.font({ family: family, pixelSize: scaled(17), weight: Font.DemiBold })
    // What a row has saved, meant for a rounded face: there is none that systems here come with, so
    // it is the ordinary one.
    readonly property font title3: Qt.font({ family: family, pixelSize: scaled(15), weight: Font.Bold })
    readonly property font headline: Qt.font({ family: family, pixelSize: scaled(13), weight: Font.Bold })
    readonly property font body: Qt.font({ family: family, pixelSize: scaled(13) })
    readonly property font bodyMedium: Qt.font({ family: family, pixelSize: scaled(13), weight: Font.Medium })
    readonly property font bodyMonospaced: Qt.font({ family: Appearance.fixedFamily, pixelSize: scaled(13) })
    readonly property font subheadline: Qt.font({ family: family, pixelSize: scaled(11) })
    readonly property font subheadlineMedium: Qt.font({ family: family, pixelSize: scaled(11), weight: Font.Medium })
    readonly property font caption: Qt.font({ family: family, pixelSize: scaled(10) })
    readonly property font captionMedium: Qt.font({ family: family, pixelSize: scaled(10), weight: Font.Medium })
    readonly property font captionMonospaced: Qt.font({
        family: Appearance.fixedFamily,
        pixelSize: scaled(10),
        weight: Font.DemiBold
    })
    readonly property font caption2: Qt.font({ family: family, pixelSize: scaled(10) })
    // In a tile that is as large as the picture it stands for, whatever the size of text.
    readonly property font tileLabel: Qt.font({ family: family, pixelSize: Math.min(scaled(10), 12), weight: Font.Bold })

    readonly property int calloutSize: scaled(12)
    readonly property int captionSize: scaled(10)

    readonly property int smallControl: scaled(20)
    readonly property int regularControl: scaled(24)
    readonly property int largeControl: scaled(30)
    readonly property int controlRadius: 6
    readonly property int groupRadius: 8
    readonly property int rowHeight: scaled(36)
    readonly property int padding: 16 ///< The platform's default around a view.

    /// Of a movement or fade, in milliseconds.
    readonly property int duration: Appearance.reducedMotion ? 0 : 200

    /// A length that grows with the text: what it is at the usual size of text.
    function scaled(length: real): int {
        return Math.round(length * Appearance.textScale);
    }

    /// The first two in usual contrast, the others in high contrast.
    function shade(light: color, dark: color, strongLight: color, strongDark: color): color {
        if (highContrast)
            return root.dark ? strongDark : strongLight;
        return root.dark ? dark : light;
    }
}
