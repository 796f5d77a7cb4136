// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QQmlEngine>
#include <QValidator>

namespace pixpress {

/// The text with a space in place of each line break and other control character, for a place that
/// shows one line: a file's name may have them.
QString toSingleLine(QString text);

/// Keeps line breaks out of a field, which would not show them: they are taken out of what is
/// pasted. Accepts any text.
class SingleLine : public QValidator
{
    Q_OBJECT
    QML_ELEMENT

public:
    State validate(QString &text, int &position) const override;
};

} // namespace pixpress
