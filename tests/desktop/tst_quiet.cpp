// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// Nothing is said on the standard outputs while all is well, whatever draws the window. Nothing is
/// filtered out: Mesa's software driver does not speak either.
class QuietTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void compressing_saysNothing_data();
    void compressing_saysNothing();
    void greeting_saysNothing_data() { compressing_saysNothing_data(); }
    void greeting_saysNothing();
    void everyView_saysNothing_data() { compressing_saysNothing_data(); }
    void everyView_saysNothing();
    void settings_sayNothing_data() { compressing_saysNothing_data(); }
    void settings_sayNothing();
};

namespace {

Invocation with(const QStringList &environment)
{
    Invocation invocation;
    for (const QString &entry : environment)
        invocation.environment.append({entry.section(u'=', 0, 0), entry.section(u'=', 1)});
    return invocation;
}

bool usesDriver(const Program &program)
{
    QFile libraries(u"/proc/%1/maps"_s.arg(program.processId()));
    if (!libraries.open(QIODevice::ReadOnly))
        return false;
    const QByteArray names = libraries.readAll();
    return names.contains("_dri.so") || names.contains("/libgallium-"); // its name since Mesa 24.2
}

} // namespace

void QuietTest::compressing_saysNothing_data()
{
    QTest::addColumn<QStringList>("environment");
    QTest::addColumn<bool>("usesOpenGL");
    QTest::newRow("by default") << QStringList() << false;
    QTest::newRow("software") << QStringList{u"QT_QUICK_BACKEND=software"_s} << false;
    QTest::newRow("OpenGL") << QStringList{u"QT_QUICK_BACKEND=rhi"_s, u"QSG_RHI_BACKEND=opengl"_s,
                                           u"LIBGL_ALWAYS_SOFTWARE=1"_s}
                            << true;
}

void QuietTest::compressing_saysNothing()
{
    QFETCH(QStringList, environment);
    QFETCH(bool, usesOpenGL);
    Desktop desktop;
    QVERIFY(desktop.start());
    Invocation invocation = with(environment);
    const QList<std::pair<QString, QString>> pictures{{u"lake at dusk.jpg"_s, u"a.jpg"_s},
                                                      {u"island map.png"_s, u"b.png"_s},
                                                      {u"marbled ink.webp"_s, u"c.webp"_s},
                                                      {u"city by night.avif"_s, u"d.avif"_s}};
    for (const auto &[sample, name] : pictures)
        invocation.arguments.append(desktop.sample(sample, name));

    Program program(desktop, QStringLiteral(PIXPRESS_OFFLINE), invocation);
    QVERIFY(program.isInFront());
    QTRY_COMPARE_WITH_TIMEOUT(desktop.fileNames().filter(u"-pixpress."_s).size(), pictures.size(),
                              patience);
    const QImage list = program.picture();
    desktop.press({u"ctrl+comma"_s});
    QTRY_VERIFY_WITH_TIMEOUT(program.picture() != list, patience);
    desktop.press({u"Escape"_s});

    QCOMPARE(usesDriver(program), usesOpenGL);
    desktop.press({u"ctrl+q"_s});
    QCOMPARE(program.exitStatus(), 0);
    QCOMPARE(program.errors(), "");
    QCOMPARE(program.output(), "");
}

void QuietTest::greeting_saysNothing()
{
    QFETCH(QStringList, environment);
    QFETCH(bool, usesOpenGL);
    Desktop desktop;
    QVERIFY(desktop.start());
    Program program(desktop, QStringLiteral(PIXPRESS_REMOTE), with(environment));
    QVERIFY(program.isInFront());
    QTRY_VERIFY_WITH_TIMEOUT(showsLogo(program.picture()), patience);
    QCOMPARE(usesDriver(program), usesOpenGL);
    desktop.press({u"ctrl+q"_s});
    QCOMPARE(program.exitStatus(), 0);
    QCOMPARE(program.errors(), "");
    QCOMPARE(program.output(), "");
}

void QuietTest::everyView_saysNothing()
{
    QFETCH(QStringList, environment);
    QFETCH(bool, usesOpenGL);
    Desktop desktop;
    QVERIFY(desktop.start());
    Program program(desktop, QStringLiteral(PIXPRESS_OFFLINE), with(environment));
    QVERIFY(program.isInFront());
    QCOMPARE(usesDriver(program), usesOpenGL);
    const auto shows = [&](const QStringList &keys) {
        const QImage before = program.picture();
        desktop.press(keys);
        return QTest::qWaitFor([&] { return program.picture() != before; }, patience) &&
               program.isInFront();
    };

    // Over the toolbar's three buttons to the first switch; over what it opens to the second, and
    // on to the format and the colour.
    QVERIFY(shows(QStringList(4, u"Tab"_s) + QStringList{u"space"_s}));
    QVERIFY(shows(QStringList(4, u"Tab"_s) + QStringList{u"space"_s}));
    QVERIFY(shows({u"Tab"_s, u"space"_s})); // the list of formats
    QVERIFY(shows({u"Up"_s, u"Return"_s})); // JPEG, which needs a background
    QVERIFY(redPoints(program.picture()) == 0);
    QVERIFY(shows({u"Tab"_s, u"space"_s})); // the choice of colours
    QTRY_VERIFY_WITH_TIMEOUT(redPoints(program.picture()) > 200, patience);
    QVERIFY(shows({u"Escape"_s}));
    QTRY_COMPARE_WITH_TIMEOUT(redPoints(program.picture()), 0, patience);
    QVERIFY(shows(QStringList(4, u"Tab"_s) + QStringList{u"Up"_s, u"Down"_s, u"Down"_s})); // folder

    QVERIFY(shows({u"ctrl+comma"_s}));
    QVERIFY(shows({u"Escape"_s}));
    desktop.press({u"ctrl+q"_s});
    QCOMPARE(program.exitStatus(), 0);
    QCOMPARE(program.errors(), "");
    QCOMPARE(program.output(), "");
}

void QuietTest::settings_sayNothing()
{
    QFETCH(QStringList, environment);
    Desktop desktop;
    QVERIFY(desktop.start());
    desktop.store(u"Pixpress"_s, {{u"pixpress_api_key"_s, u"key"_s}});
    Program program(desktop, QStringLiteral(PIXPRESS_REMOTE), with(environment));
    QVERIFY(program.isInFront());
    for (const QStringList &keys : {QStringList{u"ctrl+comma"_s},
                                    {u"shift+Tab"_s, u"space"_s}, // about
                                    {u"Left"_s},                  // the quota
                                    {u"Escape"_s}}) {
        const QImage before = program.picture();
        desktop.press(keys);
        QTRY_VERIFY_WITH_TIMEOUT(program.picture() != before, patience);
        QVERIFY(program.isInFront());
    }
    desktop.press({u"ctrl+q"_s});
    QCOMPARE(program.exitStatus(), 0);
    QCOMPARE(program.errors(), "");
    QCOMPARE(program.output(), "");
}

QTEST_GUILESS_MAIN(QuietTest)
#include "tst_quiet.moc"
