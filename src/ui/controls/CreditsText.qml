// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// A line with a heart in it, which is red where there is a font of coloured emoji: the text's own
/// font often has a black one, and Qt prefers that.
Text {
    required property string credits

    text: credits.replace("❤️", "<font face=\"Noto Color Emoji\">❤️</font>").replace(/ $/, "&nbsp;")
    textFormat: Text.RichText
    Accessible.role: Accessible.StaticText
    Accessible.name: credits
}
