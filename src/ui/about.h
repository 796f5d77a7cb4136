// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QUrl>

namespace pixpress {

/// Who made the program, which version it is, and where a key comes from.
class About : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString version MEMBER version CONSTANT)
    Q_PROPERTY(QString authorName MEMBER authorName CONSTANT)
    Q_PROPERTY(QUrl authorPage MEMBER authorPage CONSTANT)
    Q_PROPERTY(QUrl developersPage MEMBER developersPage CONSTANT)
    Q_PROPERTY(QString developersHost READ developersHost CONSTANT)
    Q_PROPERTY(QString developersTitle READ developersTitle CONSTANT)

public:
    const QString version = QStringLiteral(PIXPRESS_VERSION);
    const QString authorName = QStringLiteral(PIXPRESS_AUTHOR_NAME);
    const QUrl authorPage{QStringLiteral(PIXPRESS_AUTHOR_PAGE)};
    /// Where developers sign up with the service and get a key.
    const QUrl developersPage{QStringLiteral("https://tinypng.com/developers")};

    QString developersHost() const { return developersPage.host(); }
    /// The page as people write it, without the scheme.
    QString developersTitle() const { return developersPage.host() + developersPage.path(); }
};

} // namespace pixpress
