// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTranslator>

namespace pixpress::test {

/// A language that is written from right to left: English with the letters of each word in that
/// order. Who cannot read Arabic or Hebrew sees by it what happens to their texts and layout.
class PseudoLanguage : public QTranslator
{
public:
    static QString translation(const QString &text);

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *source, const char *disambiguation,
                      int n) const override;
};

} // namespace pixpress::test
