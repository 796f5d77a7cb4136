// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <optional>

namespace pixpress {

/// How text grows or shrinks on a desktop.
struct DesktopText
{
    double factor = 1; ///< That the desktop states beside its font.
    /// Of its font; none when no desktop sets one.
    std::optional<double> points = std::nullopt;
    /// The desktop's factor is in the resolution that the windowing system tells, so that Qt
    /// enlarges the whole window by it.
    bool isInScreenScale = false;
};

/// The factor by which our text, and what it stands in, is larger than at its usual size: from 1 to
/// 2. Never smaller, since the smallest text is 10 logical pixels; never larger, for then the
/// window's parts no longer find room beside each other.
double textScale(const DesktopText &desktop);

} // namespace pixpress
