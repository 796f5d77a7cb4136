// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/textscale.h"

#include <QTest>

#include <limits>

using namespace pixpress;

class TextScaleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scale_isThatOfTheDesktopsText_data();
    void scale_isThatOfTheDesktopsText();
};

void TextScaleTest::scale_isThatOfTheDesktopsText_data()
{
    QTest::addColumn<double>("factor");
    QTest::addColumn<double>("points");
    QTest::addColumn<bool>("isInScreenScale");
    QTest::addColumn<double>("scale");
    constexpr double none = 0;

    QTest::newRow("nothing is stated") << 1.0 << none << false << 1.0;
    QTest::newRow("GNOME, larger text") << 1.25 << 11.0 << false << 1.25;
    QTest::newRow("GNOME on X11") << 1.25 << 11.0 << true << 1.0;
    QTest::newRow("KDE, its usual font") << 1.0 << 10.0 << false << 1.0;
    QTest::newRow("KDE, a larger font") << 1.0 << 15.0 << false << 1.5;
    QTest::newRow("KDE on X11, a larger font") << 1.0 << 15.0 << true << 1.5;
    QTest::newRow("largest of the usual fonts") << 1.0 << 11.0 << false << 1.0;
    QTest::newRow("just larger") << 1.0 << 11.5 << false << 1.15;
    QTest::newRow("smaller font") << 1.0 << 7.0 << false << 1.0;
    QTest::newRow("larger font and factor") << 1.25 << 12.0 << false << 1.5;
    QTest::newRow("smaller factor") << 0.5 << none << false << 1.0;
    QTest::newRow("smaller factor of a larger font") << 0.8 << 15.0 << false << 1.2;
    QTest::newRow("as large as it gets") << 2.0 << none << false << 2.0;
    QTest::newRow("larger than that") << 3.0 << none << false << 2.0;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << none << false << 1.0;
    QTest::newRow("nothing at all") << 0.0 << none << false << 1.0;
    QTest::newRow("negative") << -1.5 << none << false << 1.0;
}

void TextScaleTest::scale_isThatOfTheDesktopsText()
{
    QFETCH(double, factor);
    QFETCH(double, points);
    QFETCH(bool, isInScreenScale);
    QTEST(textScale({.factor = factor,
                     .points = points > 0 ? std::optional(points) : std::nullopt,
                     .isInScreenScale = isInScreenScale}),
          "scale");
}

QTEST_APPLESS_MAIN(TextScaleTest)
#include "tst_textscale.moc"
