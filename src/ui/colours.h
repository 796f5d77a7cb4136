// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QString>

#include <optional>

/// The text form "#rrggbb" in which the options keep a colour.
namespace pixpress {

/// Reads a colour leniently: marks around the text are ignored, letters that are no hex digits end
/// the number. None when not exactly six characters remain.
std::optional<QColor> colourFromHex(const QString &text);

/// Whether colourFromHex() would read six hex digits, and nothing else within the marks.
bool isHexColour(const QString &text);

/// "#" and two lower-case digits a component; opacity is ignored. Components above 1 are not
/// clamped and give longer texts; one that is no number ends the process.
QString toHex(const QColor &colour);
/// The same of components, 1 being the most that a screen shows: QColor keeps those above coarsely.
QString toHex(double red, double green, double blue);

} // namespace pixpress
