// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/colours.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// The text without what is neither letter nor digit at its ends.
QString trimMarks(QString text)
{
    static const QRegularExpression marks(u"\\A[^\\p{L}\\p{N}]+|[^\\p{L}\\p{N}]+\\z"_s);
    return text.remove(marks);
}

qsizetype characterCount(QStringView text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype count = 0;
    while (finder.toNextBoundary() >= 0)
        ++count;
    return count;
}

bool isHexDigit(QChar c)
{
    return std::u16string_view(u"0123456789abcdefABCDEF").contains(c.unicode());
}

/// The number that the leading hex digits make; 0 without any.
uint leadingHex(QStringView text)
{
    if (text.startsWith(u"0x", Qt::CaseInsensitive))
        text = text.mid(2);
    qsizetype length = 0;
    while (length < text.size() && isHexDigit(text[length]))
        ++length;
    return text.first(length).toUInt(nullptr, 16);
}

/// A component of 0 to 1 in 255ths, halves rounded away from zero.
uint byteOf(double component)
{
    const double scaled = std::round(component * 255);
    // Also refuses a value that is no number.
    if (!(std::abs(scaled) < 9.2e18))
        qFatal("A colour component of %f has no text form.", component);
    return static_cast<uint>(static_cast<qint64>(scaled));
}

} // namespace

std::optional<QColor> colourFromHex(const QString &text)
{
    const QString trimmed = trimMarks(text);
    if (characterCount(trimmed) != 6)
        return std::nullopt;
    return QColor::fromRgb(leadingHex(trimmed) & 0xFFFFFF);
}

bool isHexColour(const QString &text)
{
    const QString trimmed = trimMarks(text);
    return trimmed.size() == 6 && std::ranges::all_of(trimmed, isHexDigit);
}

QString toHex(const QColor &colour)
{
    const QColor rgb = colour.spec() == QColor::ExtendedRgb ? colour : colour.toRgb();
    return toHex(double(rgb.redF()), double(rgb.greenF()), double(rgb.blueF()));
}

QString toHex(double red, double green, double blue)
{
    return QString::asprintf("#%02x%02x%02x", byteOf(red), byteOf(green), byteOf(blue));
}

} // namespace pixpress
