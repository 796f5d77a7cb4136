// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/singleline.h"

#include <algorithm>

namespace pixpress {

namespace {

bool isLineBreak(QChar c)
{
    return (c >= u'\n' && c <= u'\r') || c == u'\u0085' || c == u'\u2028' || c == u'\u2029';
}

} // namespace

QString toSingleLine(QString text)
{
    std::ranges::replace_if(
        text, [](QChar c) { return c.category() == QChar::Other_Control || isLineBreak(c); }, u' ');
    return text;
}

QValidator::State SingleLine::validate(QString &text, int &position) const
{
    const auto before = QStringView(text).first(position);
    position -= static_cast<int>(std::ranges::count_if(before, isLineBreak));
    text.removeIf(isLineBreak);
    return Acceptable;
}

} // namespace pixpress
