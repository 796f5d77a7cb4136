// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/pixpressapp.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>

namespace pixpress {

/// One view's check of a key with the service. A good key is saved, also when the view that asked
/// is gone by then. GUI thread only.
class KeyValidation : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(pixpress::PixpressApp *app MEMBER m_app REQUIRED) ///< Must outlive the check.
    Q_PROPERTY(bool isValidating READ isValidating NOTIFY isValidatingChanged)

public:
    bool isValidating() const { return m_isValidating; }

    /// A check that is started while one runs is left out.
    Q_INVOKABLE void start(const QString &key);

    /// Without the spaces and tabs at its ends, which come along when a key is copied.
    Q_INVOKABLE static QString trimmed(const QString &key);

Q_SIGNALS:
    void isValidatingChanged();
    // One of these for each check, unless this object is gone by then.
    void finished(bool isValid);
    void failed(const QString &description); ///< Nothing is known of the key.

private:
    static QCoro::Task<> validate(QPointer<KeyValidation> view, PixpressApp *app, QString key);
    void setValidating(bool validating);

    PixpressApp *m_app = nullptr;
    bool m_isValidating = false;
};

} // namespace pixpress
