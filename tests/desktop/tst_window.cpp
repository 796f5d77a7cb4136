// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include <QDir>
#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// The window, as the window manager sees it.
class WindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensInItsSize_withItsTitle();
    void comesToTheFront();
    void cannotBeMadeTooSmall();
    void uselessArguments_harmNothing();
};

void WindowTest::opensInItsSize_withItsTitle()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    Program program(desktop, QStringLiteral(PIXPRESS_OFFLINE));
    QVERIFY(program.isInFront());
    QCOMPARE(program.area().size(), QSize(920, 620));
    QCOMPARE(desktop.display().title(program.window()), "Pixpress");
    QCOMPARE(desktop.display().minimumSize(program.window()), QSize(800, 550));
}

void WindowTest::comesToTheFront()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    Program other(desktop, QStringLiteral(PIXPRESS_DRAG_SOURCE));
    QVERIFY(other.isInFront());
    Program program(desktop, QStringLiteral(PIXPRESS_OFFLINE));
    QVERIFY(program.isInFront());
}

void WindowTest::cannotBeMadeTooSmall()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    Program program(desktop, QStringLiteral(PIXPRESS_OFFLINE));
    QVERIFY(program.isInFront());
    desktop.resize(program.window(), {860, 580});
    QTRY_COMPARE_WITH_TIMEOUT(program.area().size(), QSize(860, 580), patience);
    desktop.resize(program.window(), {300, 200});
    QTRY_COMPARE_WITH_TIMEOUT(program.area().size(), QSize(800, 550), patience);
}

void WindowTest::uselessArguments_harmNothing()
{
    Desktop desktop;
    QVERIFY(desktop.start());
    QVERIFY(QDir(desktop.path({})).mkdir(u"folder"_s));
    QVERIFY(QDir(desktop.path({})).mkdir(u"folder.png"_s));
    Program program(
        desktop, QStringLiteral(PIXPRESS_OFFLINE),
        {.arguments = {u"gone.png"_s, desktop.path(u"gone too.jpg"_s), u"folder"_s,
                       desktop.path(u"folder.png"_s), desktop.file(u"a.txt"_s, "text"),
                       desktop.file(u"text.png"_s, "text"), desktop.file(u"empty.webp"_s, {}),
                       u""_s, u"--unknown"_s, u"https://example.invalid/a.png"_s, u"/"_s,
                       desktop.sample(u"lake at dusk.jpg"_s, u"good.jpg"_s)}});
    QVERIFY(program.isInFront());
    QTRY_VERIFY_WITH_TIMEOUT(desktop.size(u"good-pixpress.jpg"_s) > 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(redPoints(program.picture()) > 20,
                             patience); // those with a picture's name have failed
    QCOMPARE(desktop.fileNames(), QStringList({u"a.txt"_s, u"empty.webp"_s, u"good-pixpress.jpg"_s,
                                               u"good.jpg"_s, u"text.png"_s}));
    desktop.press({u"ctrl+q"_s});
    QCOMPARE(program.exitStatus(), 0);
    QCOMPARE(program.errors(), "");
}

QTEST_GUILESS_MAIN(WindowTest)
#include "tst_window.moc"
