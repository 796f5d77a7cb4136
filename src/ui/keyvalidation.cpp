// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/keyvalidation.h"

#include "service/errors.h"

namespace pixpress {

void KeyValidation::start(const QString &key)
{
    if (m_isValidating || !m_app)
        return;
    setValidating(true);
    validate(this, m_app, key);
}

QString KeyValidation::trimmed(const QString &key)
{
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    QStringView text = key;
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text.toString();
}

QCoro::Task<> KeyValidation::validate(QPointer<KeyValidation> view, PixpressApp *app, QString key)
{
    const auto isValid = co_await app->validateAPIKey(key);
    if (!view)
        co_return;
    view->setValidating(false);
    if (isValid)
        Q_EMIT view->finished(*isValid);
    else
        Q_EMIT view->failed(errorDescription(isValid.error()));
}

void KeyValidation::setValidating(bool validating)
{
    if (std::exchange(m_isValidating, validating) != validating)
        Q_EMIT isValidatingChanged();
}

} // namespace pixpress
