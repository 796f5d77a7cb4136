// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <algorithm>
#include <cwchar>
#include <string>

/// Texts measured as a terminal shows them: most characters of East Asian scripts take two columns,
/// combining ones none. The C library knows that by its locale, which has to be one of UTF-8.
namespace pixpress::cli {

inline qsizetype columnsOf(char32_t character)
{
    return std::max(0, ::wcwidth(static_cast<wchar_t>(character)));
}

inline qsizetype columnsOf(const QString &text)
{
    qsizetype columns = 0;
    for (const char32_t character : text.toStdU32String())
        columns += columnsOf(character);
    return columns;
}

/// The longest beginning that takes no more columns.
inline QString cutToColumns(const QString &text, qsizetype columns)
{
    std::u32string characters = text.toStdU32String();
    const auto end = std::ranges::find_if(characters, [&](char32_t character) {
        columns -= columnsOf(character);
        return columns < 0;
    });
    characters.erase(end, characters.end());
    return QString::fromStdU32String(characters);
}

/// Filled up with blanks to so many columns.
inline QString paddedToColumns(const QString &text, qsizetype columns)
{
    return text + QString(std::max<qsizetype>(0, columns - columnsOf(text)), u' ');
}

} // namespace pixpress::cli
