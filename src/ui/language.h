// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

class QCoreApplication;

namespace pixpress {

/// The first of these languages ("pt-BR", most wanted first) that the window can be shown in, as
/// its translation is named ("pt_BR"). Empty for English, in which the texts of the sources are.
QString chosenLanguage(const QStringList &wanted);

/// The names of all translations ("de", "pt_BR").
QStringList translatedLanguages();

/// Shows the texts of the window in this language, and those of the toolkit's own dialogs as far as
/// the toolkit's translations are installed. To be called before the first view is made.
void installLanguage(QCoreApplication &application, const QString &language);

} // namespace pixpress
