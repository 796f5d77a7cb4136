// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/bytes.h"

#include <QLocale>

#include <array>
#include <cmath>

using namespace Qt::StringLiterals;

namespace pixpress::ByteFormatter {

namespace {

struct Unit
{
    double bytes;
    QLatin1StringView label;
    int fractionDigits;
};

constexpr std::array units{Unit{1e3, "KB"_L1, 0}, Unit{1e6, "MB"_L1, 1}, Unit{1e9, "GB"_L1, 2},
                           Unit{1e12, "TB"_L1, 2}};

double rounded(double value, int fractionDigits)
{
    const double factor = std::pow(10.0, fractionDigits);
    return std::round(value * factor) / factor;
}

} // namespace

QString format(qint64 bytes)
{
    if (bytes == 0)
        return u"Zero KB"_s;
    if (bytes == 1 || bytes == -1)
        return u"%1 byte"_s.arg(bytes);
    if (bytes > -1000 && bytes < 1000)
        return u"%1 bytes"_s.arg(bytes);

    // 999,999 bytes read as "1 MB", not as "1000 KB": a number that rounding carries to 1000 moves
    // on to the next unit.
    const auto value = static_cast<double>(bytes);
    size_t unit = 0;
    while (unit + 1 < units.size() &&
           std::abs(rounded(value / units[unit].bytes, units[unit].fractionDigits)) >= 1000)
        ++unit;
    const double shown = rounded(value / units[unit].bytes, units[unit].fractionDigits);
    return QString::number(shown, 'f', QLocale::FloatingPointShortest) + u' ' + units[unit].label;
}

} // namespace pixpress::ByteFormatter
