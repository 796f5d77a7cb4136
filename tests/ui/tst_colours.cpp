// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/colours.h"

#include <QTest>

using namespace pixpress;

class ColoursTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reading_isLenient_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QColor>("colour");

        const QColor orange(0xFF, 0x88, 0x00);
        QTest::newRow("white") << "#ffffff" << QColor(Qt::white);
        QTest::newRow("black without a sign") << "000000" << QColor(Qt::black);
        QTest::newRow("number sign") << "#FF8800" << orange;
        QTest::newRow("bare") << "ff8800" << orange;
        QTest::newRow("blanks around") << "  ff8800 \t" << orange;
        QTest::newRow("marks around") << "--ab12cd--" << QColor(0xAB, 0x12, 0xCD);
        QTest::newRow("no hex digit is black") << "zzzzzz" << QColor(Qt::black);
        QTest::newRow("digits end at the first other letter")
            << "12345g" << QColor(0x01, 0x23, 0x45);
        QTest::newRow("prefix") << "0xff88" << QColor(0x00, 0xFF, 0x88);
        QTest::newRow("upper-case prefix") << "0XFF88" << QColor(0x00, 0xFF, 0x88);
        QTest::newRow("prefix alone is black") << "0xzzzz" << QColor(Qt::black);
        QTest::newRow("letters of another script") << QStringLiteral("éééééé") << QColor(Qt::black);
        QTest::newRow("inner mark ends the number") << "ab-cde" << QColor(0x00, 0x00, 0xAB);
        QTest::newRow("a character of two code units")
            << QStringLiteral("12345\U0001D518") << QColor(0x01, 0x23, 0x45);
        QTest::newRow("marks of two code units around")
            << QStringLiteral("\U0001F3A8 ff8800\U0001F3A8") << orange;
        QTest::newRow("letter of two code units at the front")
            << QStringLiteral("#\U0001D51812345") << QColor(Qt::black);
        QTest::newRow("digits of another script are no hex digits")
            << QStringLiteral("\u0661\u0662\u0663\u0664\u0665\u0666") << QColor(Qt::black);
    }

    void reading_isLenient()
    {
        QFETCH(QString, text);
        QFETCH(QColor, colour);
        const auto read = colourFromHex(text);
        QVERIFY(read);
        QCOMPARE(*read, colour);
        QCOMPARE(read->alpha(), 255);
    }

    void textOfAnotherLength_givesNone_data()
    {
        QTest::addColumn<QString>("text");

        for (const char *text : {"", "#", "fff", "#fff", "#ff8800ff", "12345", "1234567",
                                 "0xff8800", "ff 8800", "      ", "------", "🎨🎨🎨🎨🎨🎨"})
            QTest::newRow(text) << text;
    }

    void textOfAnotherLength_givesNone()
    {
        QFETCH(QString, text);
        QVERIFY(!colourFromHex(text));
    }

    void hexColour_isSixHexDigits_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isColour");

        for (const char *text : {"ff8800", "#FF8800", " #ff8800 ", "--ab12cd--"})
            QTest::newRow(text) << text << true;
        for (const char *text : {"orange", "zzzzzz", "12345g", "fff", "0xff88", "#ff8800ff", ""})
            QTest::newRow(text) << text << false;
    }

    void hexColour_isSixHexDigits()
    {
        QFETCH(QString, text);
        QTEST(isHexColour(text), "isColour");
    }

    void writing_roundsHalvesUp_data()
    {
        QTest::addColumn<QColor>("colour");
        QTest::addColumn<QString>("text");

        QTest::newRow("half gray") << QColor::fromRgbF(0.5F, 0.5F, 0.5F) << "#808080";
        QTest::newRow("opacity is left out") << QColor(0x1A, 0x2B, 0x3C, 0x40) << "#1a2b3c";
        QTest::newRow("hue and saturation") << QColor::fromHsv(0, 255, 255) << "#ff0000";
        QTest::newRow("one component") << QColor(0, 0, 10) << "#00000a";
    }

    void writing_roundsHalvesUp()
    {
        QFETCH(QColor, colour);
        QFETCH(QString, text);
        QCOMPARE(toHex(colour), text);
    }

    void writingAComponentAboveOne_isNotClamped()
    {
        // 1.1 times 255 is 280.5, which is 281: 119 in hexadecimal.
        QCOMPARE(toHex(1.1, 0.0, 1.0), QStringLiteral("#11900ff"));
    }

    void roundTrip_givesLowerCase()
    {
        QCOMPARE(toHex(*colourFromHex(QStringLiteral("#1a2b3c"))), QStringLiteral("#1a2b3c"));
        QCOMPARE(toHex(*colourFromHex(QStringLiteral("#1A2B3C"))), QStringLiteral("#1a2b3c"));
        for (int value = 0; value < 256; ++value) {
            const QString text = QString::asprintf("#%02x%02x%02x", value, 255 - value, value / 2);
            QCOMPARE(toHex(*colourFromHex(text)), text);
        }
    }
};

QTEST_GUILESS_MAIN(ColoursTest)

#include "tst_colours.moc"
