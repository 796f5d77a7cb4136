// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/options.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <limits>

using namespace pixpress;
using namespace Qt::StringLiterals;

class OptionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void freshOptions_haveTheirDefaults();
    void options_makeTheirBody_data();
    void options_makeTheirBody();
    void everyResizeMode_isSentWithBothDimensions_data();
    void everyResizeMode_isSentWithBothDimensions();
    void singleDimension_isSentAsScale_data();
    void singleDimension_isSentAsScale();
    void conversion_asksForBackgroundWithoutAlpha_data();
    void conversion_asksForBackgroundWithoutAlpha();
    void everyChoiceOfMetadata_keepsItsOrder();
    void makingTheBody_changesNothing();
    void destination_doesNotReachTheBody();
    void anyFieldThatDiffers_makesOptionsUnequal_data();
    void anyFieldThatDiffers_makesOptionsUnequal();
};

/// The body as text with its members sorted; empty when there is none.
static QByteArray body(const CompressionOptions &options)
{
    const auto json = options.toJSON();
    return json ? QJsonDocument(*json).toJson(QJsonDocument::Compact) : QByteArray();
}

void OptionsTest::freshOptions_haveTheirDefaults()
{
    const CompressionOptions options;
    QCOMPARE(options.resizeEnabled, false);
    QCOMPARE(options.resizeMode, ResizeMode::fit);
    QVERIFY(!options.resizeWidth && !options.resizeHeight);
    QCOMPARE(options.convertEnabled, false);
    QCOMPARE(options.convertFormat, ImageFormat::webp);
    QVERIFY(!options.preserveCopyright && !options.preserveCreation && !options.preserveLocation);
    QCOMPARE(options.outputDestination, OutputDestination::alongside);
    QVERIFY(!options.customFolderURL);
    QCOMPARE(options.backgroundColor, u"#ffffff"_s);
    QCOMPARE(options.requiresBackground(), false);
    QVERIFY(!options.toJSON());
}

void OptionsTest::options_makeTheirBody_data()
{
    QTest::addColumn<CompressionOptions>("options");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const CompressionOptions &options, const char *expected) {
        QTest::newRow(name) << options << QByteArray(expected);
    };

    row("nothing", {}, "");
    row("resize without dimensions", {.resizeEnabled = true}, "");
    row("dimensions without resize", {.resizeWidth = 800, .resizeHeight = 600}, "");
    row("resize without dimensions, but metadata",
        {.resizeEnabled = true, .preserveLocation = true}, R"({"preserve":["location"]})");
    row("zero dimensions",
        {.resizeEnabled = true, .resizeWidth = qint64(0), .resizeHeight = qint64(0)},
        R"({"resize":{"height":0,"method":"fit","width":0}})");
    row("negative width", {.resizeEnabled = true, .resizeWidth = -5},
        R"({"resize":{"method":"scale","width":-5}})");
    row("beyond what a double holds",
        {.resizeEnabled = true,
         .resizeWidth = std::numeric_limits<qint64>::max(),
         .resizeHeight = 9007199254740993},
        R"({"resize":{"height":9007199254740993,"method":"fit","width":9223372036854775807}})");
    row("format of a conversion that is off", {.convertFormat = ImageFormat::jpeg}, "");
    row("background of a conversion that is off", {.backgroundColor = u"#123456"_s}, "");
    row("background of a format with alpha",
        {.convertEnabled = true, .backgroundColor = u"#123456"_s},
        R"({"convert":{"type":["image/webp"]}})");
    row("background as it stands",
        {.convertEnabled = true,
         .convertFormat = ImageFormat::avif,
         .backgroundColor = u" Größe\"\\ "_s},
        R"({"convert":{"type":["image/avif"]},"transform":{"background":" Größe\"\\ "}})");
    row("empty background",
        {.convertEnabled = true, .convertFormat = ImageFormat::jpeg, .backgroundColor = {}},
        R"({"convert":{"type":["image/jpeg"]},"transform":{"background":""}})");
    row("upper-case background",
        {.convertEnabled = true,
         .convertFormat = ImageFormat::jpeg,
         .backgroundColor = u"#FFFFFF"_s},
        R"({"convert":{"type":["image/jpeg"]},"transform":{"background":"#FFFFFF"}})");
    row("creation only", {.preserveCreation = true}, R"({"preserve":["creation"]})");

    CompressionOptions everything{.resizeEnabled = true,
                                  .resizeMode = ResizeMode::cover,
                                  .resizeWidth = 800,
                                  .resizeHeight = 600,
                                  .convertEnabled = true,
                                  .convertFormat = ImageFormat::jpeg,
                                  .preserveCopyright = true,
                                  .preserveLocation = true};
    row("everything", everything,
        R"({"convert":{"type":["image/jpeg"]},"preserve":["copyright","location"],)"
        R"("resize":{"height":600,"method":"cover","width":800},)"
        R"("transform":{"background":"#ffffff"}})");
    everything.resizeHeight.reset();
    row("everything, height cleared", everything,
        R"({"convert":{"type":["image/jpeg"]},"preserve":["copyright","location"],)"
        R"("resize":{"method":"scale","width":800},"transform":{"background":"#ffffff"}})");
}

void OptionsTest::options_makeTheirBody()
{
    QFETCH(const CompressionOptions, options);
    QFETCH(const QByteArray, expected);
    QCOMPARE(body(options), expected);
    QCOMPARE(options.toJSON().has_value(), !expected.isEmpty());
}

template <typename E>
static void addCases()
{
    QTest::addColumn<E>("value");
    for (const E value : allCases<E>())
        QTest::newRow(qPrintable(rawValue(value))) << value;
}

void OptionsTest::everyResizeMode_isSentWithBothDimensions_data()
{
    addCases<ResizeMode>();
}

void OptionsTest::everyResizeMode_isSentWithBothDimensions()
{
    QFETCH(const ResizeMode, value);
    const CompressionOptions options{
        .resizeEnabled = true, .resizeMode = value, .resizeWidth = 30, .resizeHeight = 20};
    QCOMPARE(body(options), R"({"resize":{"height":20,"method":")" + rawValue(value).toLatin1() +
                                R"(","width":30}})");
}

void OptionsTest::singleDimension_isSentAsScale_data()
{
    addCases<ResizeMode>();
}

void OptionsTest::singleDimension_isSentAsScale()
{
    QFETCH(const ResizeMode, value);
    QCOMPARE(body({.resizeEnabled = true, .resizeMode = value, .resizeWidth = 30}),
             R"({"resize":{"method":"scale","width":30}})");
    QCOMPARE(body({.resizeEnabled = true, .resizeMode = value, .resizeHeight = 20}),
             R"({"resize":{"height":20,"method":"scale"}})");
}

void OptionsTest::conversion_asksForBackgroundWithoutAlpha_data()
{
    addCases<ImageFormat>();
}

void OptionsTest::conversion_asksForBackgroundWithoutAlpha()
{
    QFETCH(const ImageFormat, value);
    const bool withoutAlpha = value == ImageFormat::jpeg || value == ImageFormat::avif;
    CompressionOptions options{.convertEnabled = true, .convertFormat = value};
    QCOMPARE(options.requiresBackground(), withoutAlpha);
    const QByteArray convert = R"("convert":{"type":[")" + rawValue(value).toLatin1() + R"("]})";
    const QByteArray transform = R"(,"transform":{"background":"#ffffff"})";
    QCOMPARE(body(options), '{' + convert + (withoutAlpha ? transform : QByteArray()) + '}');

    options.convertEnabled = false;
    QCOMPARE(options.requiresBackground(), false);
    QCOMPARE(body(options), QByteArray());
}

void OptionsTest::everyChoiceOfMetadata_keepsItsOrder()
{
    for (unsigned choice = 0; choice < 8; ++choice) {
        const CompressionOptions options{.preserveCopyright = (choice & 1) != 0,
                                         .preserveCreation = (choice & 2) != 0,
                                         .preserveLocation = (choice & 4) != 0};
        QJsonArray names;
        if (options.preserveCopyright)
            names << u"copyright"_s;
        if (options.preserveCreation)
            names << u"creation"_s;
        if (options.preserveLocation)
            names << u"location"_s;
        const auto json = options.toJSON();
        QCOMPARE(json.has_value(), choice != 0);
        if (json)
            QCOMPARE(*json, (QJsonObject{{u"preserve"_s, names}}));
    }
}

void OptionsTest::makingTheBody_changesNothing()
{
    const CompressionOptions options{.resizeEnabled = true,
                                     .resizeMode = ResizeMode::thumb,
                                     .resizeWidth = 1,
                                     .convertEnabled = true,
                                     .convertFormat = ImageFormat::avif};
    const CompressionOptions before = options;
    const QByteArray first = body(options);
    QCOMPARE(body(options), first);
    QVERIFY(options == before);
}

void OptionsTest::destination_doesNotReachTheBody()
{
    const CompressionOptions options{.resizeEnabled = true, .resizeWidth = 10};
    CompressionOptions moved = options;
    moved.outputDestination = OutputDestination::overwrite;
    QVERIFY(moved != options);
    QCOMPARE(body(moved), body(options));

    CompressionOptions elsewhere = options;
    elsewhere.customFolderURL = QUrl(u"file:///elsewhere"_s);
    QVERIFY(elsewhere != options);
    QCOMPARE(body(elsewhere), body(options));

    QCOMPARE(body({.outputDestination = OutputDestination::customFolder,
                   .customFolderURL = QUrl(u"file:///elsewhere"_s)}),
             QByteArray());
}

void OptionsTest::anyFieldThatDiffers_makesOptionsUnequal_data()
{
    QTest::addColumn<CompressionOptions>("changed");
    QTest::newRow("resizeEnabled") << CompressionOptions{.resizeEnabled = true};
    QTest::newRow("resizeMode") << CompressionOptions{.resizeMode = ResizeMode::scale};
    QTest::newRow("resizeWidth") << CompressionOptions{.resizeWidth = qint64(0)};
    QTest::newRow("resizeHeight") << CompressionOptions{.resizeHeight = qint64(0)};
    QTest::newRow("convertEnabled") << CompressionOptions{.convertEnabled = true};
    QTest::newRow("convertFormat") << CompressionOptions{.convertFormat = ImageFormat::png};
    QTest::newRow("preserveCopyright") << CompressionOptions{.preserveCopyright = true};
    QTest::newRow("preserveCreation") << CompressionOptions{.preserveCreation = true};
    QTest::newRow("preserveLocation") << CompressionOptions{.preserveLocation = true};
    QTest::newRow("outputDestination")
        << CompressionOptions{.outputDestination = OutputDestination::overwrite};
    QTest::newRow("customFolderURL") << CompressionOptions{.customFolderURL = QUrl()};
    QTest::newRow("backgroundColor") << CompressionOptions{.backgroundColor = u"#FFFFFF"_s};
}

void OptionsTest::anyFieldThatDiffers_makesOptionsUnequal()
{
    QFETCH(const CompressionOptions, changed);
    const CompressionOptions copy = changed;
    QVERIFY(copy == changed);
    QVERIFY(changed != CompressionOptions());
}

QTEST_GUILESS_MAIN(OptionsTest)
#include "tst_options.moc"
