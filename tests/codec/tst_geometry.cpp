// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/geometry.h"

#include <QTest>

using namespace pixpress;

class TestGeometry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plans_data();
    void plans();
};

void TestGeometry::plans_data()
{
    QTest::addColumn<PixelSize>("source");
    QTest::addColumn<ResizeMode>("method");
    QTest::addColumn<qint64>("width"); // 0: not given.
    QTest::addColumn<qint64>("height");
    QTest::addColumn<PixelSize>("scaled");
    QTest::addColumn<PixelSize>("result");

    const auto row = [](PixelSize source, ResizeMode method, qint64 width, qint64 height,
                        PixelSize scaled, PixelSize result) {
        QTest::addRow("%lldx%lld %s %lldx%lld", source.width, source.height,
                      qPrintable(rawValue(method)), width, height)
            << source << method << width << height << scaled << result;
    };
    using enum ResizeMode;
    row({600, 400}, scale, 300, 0, {300, 200}, {300, 200});
    row({600, 400}, scale, 0, 100, {150, 100}, {150, 100});
    row({600, 400}, scale, 301, 0, {301, 201}, {301, 201}); // 200.67
    row({3, 2}, scale, 2, 0, {2, 1}, {2, 1});               // 1.33
    row({200, 101}, scale, 100, 0, {100, 51}, {100, 51});   // 50.5 goes up
    row({600, 400}, scale, 1200, 0, {600, 400}, {600, 400});
    row({600, 400}, scale, 0, 401, {600, 400}, {600, 400});
    row({600, 400}, scale, 300, 300, {300, 200}, {300, 200});
    row({10'000, 1}, scale, 10, 0, {10, 1}, {10, 1});
    row({1, 10'000}, scale, 0, 10, {1, 10}, {1, 10});
    row({600, 400}, fit, 300, 300, {300, 200}, {300, 200});
    row({400, 600}, fit, 300, 300, {200, 300}, {200, 300});
    row({600, 400}, fit, 600, 400, {600, 400}, {600, 400});
    row({600, 400}, fit, 1000, 100, {150, 100}, {150, 100});
    row({600, 400}, fit, 1000, 1000, {600, 400}, {600, 400});
    row({600, 400}, fit, 1, 1, {1, 1}, {1, 1});
    row({5, 5000}, fit, 100, 100, {1, 100}, {1, 100});
    row({600, 400}, cover, 300, 300, {450, 300}, {300, 300});
    row({400, 600}, cover, 300, 300, {300, 450}, {300, 300});
    row({600, 400}, cover, 300, 200, {300, 200}, {300, 200});
    row({60, 40}, cover, 300, 300, {450, 300}, {300, 300});
    row({1, 1}, cover, 7, 3, {7, 7}, {7, 3});
    row({333, 1000}, cover, 1, 1, {1, 3}, {1, 1});
    row({600, 400}, thumb, 50, 80, {120, 80}, {50, 80});
    row({10, 10}, thumb, 20, 40, {40, 40}, {20, 40});
}

void TestGeometry::plans()
{
    QFETCH(PixelSize, source);
    QFETCH(ResizeMode, method);
    QFETCH(qint64, width);
    QFETCH(qint64, height);
    QFETCH(PixelSize, scaled);
    QFETCH(PixelSize, result);

    const auto given = [](qint64 side) { return side > 0 ? std::optional(side) : std::nullopt; };
    const ResizePlan plan = planResize(source, {method, given(width), given(height)});
    QCOMPARE(plan.scaled.width, scaled.width);
    QCOMPARE(plan.scaled.height, scaled.height);
    QCOMPARE(plan.result.width, result.width);
    QCOMPARE(plan.result.height, result.height);
}

QTEST_GUILESS_MAIN(TestGeometry)
#include "tst_geometry.moc"
