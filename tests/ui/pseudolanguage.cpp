// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pseudolanguage.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace pixpress::test {

QString PseudoLanguage::translation(const QString &text)
{
    // A mark of a letter of that direction, so that the whole is taken for such a text; then each
    // word in an override of the direction. Not the placeholders: what they stand for keeps its
    // own.
    static const QRegularExpression word(u"(?<![%#\\w])(\\p{L}[\\p{L}\\p{M}']*)"_s);
    QString translated = text;
    translated.replace(u"→"_s, u"←"_s);
    translated.replace(word, u"\u202E\\1\u202C"_s);
    return u'\u200F' + translated;
}

QString PseudoLanguage::translate(const char *context, const char *source, const char *, int) const
{
    if (qstrcmp(source, "QT_LAYOUT_DIRECTION") == 0)
        return u"RTL"_s;
    if (context[0] == 'Q' && QChar::fromLatin1(context[1]).isUpper()) // of the toolkit
        return {};
    return translation(QString::fromUtf8(source));
}

} // namespace pixpress::test
