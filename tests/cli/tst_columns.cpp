// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/columns.h"

#include <QTest>

using namespace pixpress::cli;
using namespace Qt::StringLiterals;

class ColumnsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_isCutWhereItsColumnsEnd_data();
    void text_isCutWhereItsColumnsEnd();
    void text_isPaddedToItsColumns();
};

void ColumnsTest::text_isCutWhereItsColumnsEnd_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qsizetype>("columns");
    QTest::addColumn<QString>("cut");
    const auto row = [](const char *name, const QString &text, qsizetype columns,
                        const QString &cut) { QTest::newRow(name) << text << columns << cut; };
    row("shorter", u"abc"_s, 5, u"abc"_s);
    row("as long", u"abc"_s, 3, u"abc"_s);
    row("longer", u"abc"_s, 2, u"ab"_s);
    row("no room", u"abc"_s, 0, u""_s);
    row("empty", u""_s, 5, u""_s);
    row("wide", u"写真.png"_s, 4, u"写真"_s);
    row("half of a wide one", u"写真.png"_s, 3, u"写"_s);
    row("combining", u"e\u0301\u0301x"_s, 1, u"e\u0301\u0301"_s);
    row("beyond the first plane", u"\U0001F4F7\U0001F4F7"_s, 3, u"\U0001F4F7"_s);
}

void ColumnsTest::text_isCutWhereItsColumnsEnd()
{
    QFETCH(const QString, text);
    QFETCH(const qsizetype, columns);
    QFETCH(const QString, cut);
    QCOMPARE(cutToColumns(text, columns), cut);
}

void ColumnsTest::text_isPaddedToItsColumns()
{
    QCOMPARE(paddedToColumns(u"ab"_s, 4), u"ab  "_s);
    QCOMPARE(paddedToColumns(u"写"_s, 4), u"写  "_s);
    QCOMPARE(paddedToColumns(u"写真写"_s, 4), u"写真写"_s);
    QCOMPARE(columnsOf(u"写真.png"_s), 8);
}

QTEST_GUILESS_MAIN(ColumnsTest)
#include "tst_columns.moc"
