// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/language.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QSet>
#include <QTranslator>

#include <memory>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

const QString folder = u":/translations"_s; // of the program's resources
const QString prefix = u"pixpress_"_s;
const QString suffix = u".qm"_s;

/// A catalogue that is missing or empty changes nothing.
void install(QCoreApplication &application, const QString &catalogue, const QString &from)
{
    auto translator = std::make_unique<QTranslator>(&application);
    if (translator->load(catalogue, from) && application.installTranslator(translator.get()))
        [[maybe_unused]]
        auto *child = translator.release(); // the application's, which deletes it
}

} // namespace

QStringList translatedLanguages()
{
    QStringList names = QDir(folder).entryList({prefix + u'*' + suffix});
    for (QString &name : names)
        name = name.chopped(suffix.size()).mid(prefix.size());
    return names;
}

QString chosenLanguage(const QStringList &wanted)
{
    QSet<QLocale::Language> refused;
    for (const QString &name : wanted) {
        const QLocale locale(name);
        const bool saysOnlyLanguage = !name.contains(u'-');
        if (saysOnlyLanguage && refused.contains(locale.language()))
            continue; // it is there for "zh-TW" before it, and does not mean the Chinese of Beijing
        // What follows is wanted less than English, although there may be a translation for it.
        if (locale.language() == QLocale::English)
            return {};
        // Who reads Portuguese anywhere reads that of Brazil, but Chinese is written in two ways.
        for (const QString &translated : translatedLanguages()) {
            const QLocale offered(translated);
            if (offered.language() == locale.language() && offered.script() == locale.script())
                return translated;
        }
        refused.insert(locale.language());
    }
    return {};
}

void installLanguage(QCoreApplication &application, const QString &language)
{
    if (language.isEmpty())
        return;
    install(application, u"qtbase_"_s + language,
            QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    install(application, prefix + language, folder);
}

} // namespace pixpress
