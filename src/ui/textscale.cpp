// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/textscale.h"

#include <algorithm>
#include <cmath>

namespace pixpress {

namespace {

// Desktops come with fonts of 9 to 11 points, most with 10: in that range nobody has asked for
// anything.
constexpr double usualPoints = 10;
constexpr double largestUsualPoints = 11;

} // namespace

double textScale(const DesktopText &desktop)
{
    double scale = 1;
    if (!desktop.isInScreenScale && std::isfinite(desktop.factor))
        scale *= desktop.factor;
    if (const double points = desktop.points.value_or(0); points > largestUsualPoints)
        scale *= points / usualPoints;
    return std::clamp(scale, 1.0, 2.0);
}

} // namespace pixpress
