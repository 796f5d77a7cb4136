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
};

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
    Invocation invocation;
    for (const QString &entry : environment)
        invocation.environment.append({entry.section(u'=', 0, 0), entry.section(u'=', 1)});
    const QList<std::pair<QString, QString>> pictures{{u"lake at dusk.jpg"_s, u"a.jpg"_s},
                                                      {u"island map.png"_s, u"b.png"_s},
                                                      {u"marbled ink.webp"_s, u"c.webp"_s},
                                                      {u"city by night.avif"_s, u"d.avif"_s}};
    for (const auto &[sample, name] : pictures)
        invocation.arguments.append(desktop.sample(sample, name));

    Program program(desktop, QStringLiteral(PIXPRESS_OFFLINE), invocation);
    QVERIFY(program.isInFront());
    QTRY_COMPARE_WITH_TIMEOUT(desktop.fileNames().filter(u"-pixpress."_s).size(), pictures.size(),
                              120'000);
    const QImage list = program.picture();
    desktop.press({u"ctrl+comma"_s});
    QTRY_VERIFY(program.picture() != list);
    desktop.press({u"Escape"_s});

    QFile libraries(u"/proc/%1/maps"_s.arg(program.processId()));
    QVERIFY(libraries.open(QIODevice::ReadOnly));
    QCOMPARE(libraries.readAll().contains("_dri.so"), usesOpenGL);

    desktop.press({u"ctrl+q"_s});
    QCOMPARE(program.exitStatus(), 0);
    QCOMPARE(program.errors(), "");
    QCOMPARE(program.output(), "");
}

QTEST_GUILESS_MAIN(QuietTest)
#include "tst_quiet.moc"
