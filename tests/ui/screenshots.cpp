// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Drives the application's window through its states and writes a picture of each:
//     pixpress-screenshots FOLDER [--size WIDTHxHEIGHT] [--text FACTOR] [--contrast]
// LANGUAGE chooses the language of the window; "rtl" stands for one that is made up.

#include "pseudolanguage.h"
#include "scenes.h"
#include "ui/application.h"

#include <QCommandLineParser>
#include <QDir>
#include <QPalette>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

QPalette palette(bool dark)
{
    return dark ? QPalette(QColor(0x323232), QColor(0x1E1E1E))
                : QPalette(QColor(0xECECEC), QColor(0xECECEC));
}

/// Waits until nothing moves any more: the same picture twice in a row, a while apart.
QImage pictureOf(const Scene &scene, Rest rest)
{
    QImage image;
    QImage before;
    do {
        before = image;
        QTest::qWait(250);
        image = scene.window->grabWindow();
    } while (rest == Rest::comes && image != before);
    return image;
}

} // namespace

int main(int argc, char *argv[])
{
    Application application(argc, argv);
    PseudoLanguage pseudoLanguage;
    if (qEnvironmentVariable("LANGUAGE") == u"rtl") {
        QCoreApplication::installTranslator(&pseudoLanguage);
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    }
    QCommandLineParser parser;
    const QCommandLineOption size(u"size"_s, u"of the window"_s, u"WIDTHxHEIGHT"_s, u"920x620"_s);
    const QCommandLineOption text(u"text"_s, u"factor on all text"_s, u"FACTOR"_s, u"1"_s);
    const QCommandLineOption contrast(u"contrast"_s, u"high contrast"_s);
    parser.addOptions({size, text, contrast});
    parser.addPositionalArgument(u"FOLDER"_s, u"where the pictures go"_s);
    parser.process(application);
    const QStringList folders = parser.positionalArguments();
    const QStringList sides = parser.value(size).split(u'x');
    if (folders.size() != 1 || sides.size() != 2)
        parser.showHelp(2);
    if (!QDir().mkpath(folders.first()))
        qFatal("%s cannot be made.", qUtf8Printable(folders.first()));
    for (const bool dark : {false, true}) {
        QGuiApplication::setPalette(palette(dark));
        const DesktopPreferences preferences{.highContrast = parser.isSet(contrast),
                                             .textScale = parser.value(text).toDouble()};
        visitScenes({sides.first().toInt(), sides.last().toInt()},
                    [&](const Scene &scene, const QString &name, Rest rest) {
                        prefer(*qmlEngine(scene.window), preferences);
                        const QString path =
                            QDir(folders.first())
                                .filePath(u"%1-%2.png"_s.arg(name, dark ? u"dark"_s : u"light"_s));
                        if (!pictureOf(scene, rest).save(path))
                            qFatal("%s cannot be written.", qUtf8Printable(path));
                    });
    }
    return 0;
}
