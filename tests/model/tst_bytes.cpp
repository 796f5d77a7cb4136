// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/bytes.h"

#include <QLocale>
#include <QTest>

#include <limits>

using namespace pixpress;
using namespace Qt::StringLiterals;

class BytesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void size_readsAsInFileManagers_data();
    void size_readsAsInFileManagers();
    void negativeSize_differsByItsMinusSign_data();
    void negativeSize_differsByItsMinusSign();
    void size_isTheSameInEveryLocale();
};

void BytesTest::size_readsAsInFileManagers_data()
{
    QTest::addColumn<qint64>("bytes");
    QTest::addColumn<QString>("text");
    const auto row = [](qint64 bytes, const char *text) {
        QTest::addRow("%lld", static_cast<long long>(bytes)) << bytes << QString::fromLatin1(text);
    };
    row(0, "Zero KB");
    row(1, "1 byte");
    row(2, "2 bytes");
    row(532, "532 bytes");
    row(999, "999 bytes");
    row(1000, "1 KB");
    row(1023, "1 KB");
    row(1024, "1 KB");
    row(1234, "1 KB");
    row(1499, "1 KB");
    row(1501, "2 KB");
    row(999'499, "999 KB");
    row(999'501, "1 MB"); // not "1000 KB"
    row(999'999, "1 MB");
    row(1'000'000, "1 MB");
    row(1'049'999, "1 MB");
    row(1'050'001, "1.1 MB");
    row(1'534'000, "1.5 MB");
    row(1'999'999, "2 MB");
    row(2'000'000, "2 MB");
    row(10'040'000, "10 MB");
    row(500'000'000, "500 MB");
    row(999'949'999, "999.9 MB");
    row(999'950'001, "1 GB");
    row(1'000'000'000, "1 GB");
    row(1'004'999'999, "1 GB");
    row(1'005'000'001, "1.01 GB");
    row(1'500'000'000, "1.5 GB");
    row(123'456'789'012, "123.46 GB");
    row(999'994'999'999, "999.99 GB");
    row(999'995'000'001, "1 TB");
    row(1'000'000'000'000, "1 TB");
    row(2'720'000'000'000, "2.72 TB");
    row(1'000'000'000'000'000, "1000 TB");
    row(std::numeric_limits<qint64>::max(), "9223372.04 TB");
}

void BytesTest::size_readsAsInFileManagers()
{
    QFETCH(const qint64, bytes);
    QFETCH(const QString, text);
    QCOMPARE(ByteFormatter::format(bytes), text);
}

void BytesTest::negativeSize_differsByItsMinusSign_data()
{
    QTest::addColumn<qint64>("bytes");
    for (const qint64 bytes : {1LL, 2LL, 999LL, 1000LL, 999'999LL, 1'534'000LL, 1'500'000'000LL,
                               2'720'000'000'000LL, std::numeric_limits<long long>::max()})
        QTest::addRow("%lld", static_cast<long long>(bytes)) << bytes;
}

void BytesTest::negativeSize_differsByItsMinusSign()
{
    QFETCH(const qint64, bytes);
    QCOMPARE(ByteFormatter::format(-bytes), u'-' + ByteFormatter::format(bytes));
}

void BytesTest::size_isTheSameInEveryLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString german = ByteFormatter::format(1'534'000);
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    const QString arabic = ByteFormatter::format(1'534'000);
    QLocale::setDefault(before);
    QCOMPARE(german, u"1.5 MB"_s);
    QCOMPARE(arabic, u"1.5 MB"_s);
}

QTEST_GUILESS_MAIN(BytesTest)
#include "tst_bytes.moc"
