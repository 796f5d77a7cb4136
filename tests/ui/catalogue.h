// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace pixpress::test {

/// A text of the sources and what it is in another language.
struct Message
{
    QString context;
    QString source;
    QStringList translations; ///< One, or one for each plural form where the text counts.
    QString type;             ///< "unfinished", "vanished", ...; empty when all is well.
    bool counts = false;
};

/// All of a language's translations ("pt_BR"), as they stand in the project's folder.
QList<Message> readCatalogue(const QString &language);

} // namespace pixpress::test
