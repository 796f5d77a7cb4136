// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pictures/requestoptions.h"

#include <QTest>

using namespace pixpress;

class TestRequestOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everything_isRead();
    void emptyObject_asksForNothing();
    void looseForms_areUnderstood_data();
    void looseForms_areUnderstood();
    void faults_areNamed_data();
    void faults_areNamed();
};

void TestRequestOptions::everything_isRead()
{
    const auto options = parseRequestOptions(R"({
        "resize": {"method": "thumb", "width": 12, "height": 65535},
        "convert": {"type": ["image/webp", "image/avif"]},
        "transform": {"background": "#12aBff"},
        "preserve": ["copyright", "creation", "location"]})");
    QVERIFY2(options, qUtf8Printable(options ? QString() : options.error()));
    const RequestOptions expected{ResizeRequest{ResizeMode::thumb, 12, 65535},
                                  {ImageFormat::webp, ImageFormat::avif},
                                  RequestOptions::Colour{0x12, 0xab, 0xff},
                                  {true, true, true}};
    QCOMPARE(*options, expected);
}

void TestRequestOptions::emptyObject_asksForNothing()
{
    QCOMPARE(parseRequestOptions("{}").value(), RequestOptions{});
}

void TestRequestOptions::looseForms_areUnderstood_data()
{
    QTest::addColumn<QByteArray>("loose");
    QTest::addColumn<QByteArray>("strict");

    QTest::newRow("one type as a string") << QByteArray(R"({"convert":{"type":"image/png"}})")
                                          << QByteArray(R"({"convert":{"type":["image/png"]}})");
    QTest::newRow("a type twice") << QByteArray(R"({"convert":{"type":["image/png","image/png"]}})")
                                  << QByteArray(R"({"convert":{"type":["image/png"]}})");
    QTest::newRow("any type")
        << QByteArray(R"({"convert":{"type":"*/*"}})")
        << QByteArray(
               R"({"convert":{"type":["image/png","image/jpeg","image/webp","image/avif"]}})");
    QTest::newRow("any type, and one by name")
        << QByteArray(R"({"convert":{"type":["image/webp","*/*","*/*"]}})")
        << QByteArray(
               R"({"convert":{"type":["image/webp","image/png","image/jpeg","image/avif"]}})");
    QTest::newRow("white") << QByteArray(R"({"transform":{"background":"white"}})")
                           << QByteArray(R"({"transform":{"background":"#FFFFFF"}})");
    QTest::newRow("black") << QByteArray(R"({"transform":{"background":"black"}})")
                           << QByteArray(R"({"transform":{"background":"#000000"}})");
    QTest::newRow("nothing to preserve") << QByteArray(R"({"preserve":[]})") << QByteArray("{}");
}

void TestRequestOptions::looseForms_areUnderstood()
{
    QFETCH(QByteArray, loose);
    QFETCH(QByteArray, strict);
    QCOMPARE(parseRequestOptions(loose).value(), parseRequestOptions(strict).value());
}

void TestRequestOptions::faults_areNamed_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("named");

    const auto row = [](const char *name, const char *body, const char *named) {
        QTest::newRow(name) << QByteArray(body) << QString::fromLatin1(named);
    };
    row("nothing", "", "JSON");
    row("no JSON", "resize", "JSON");
    row("cut off", R"({"resize":)", "JSON");
    row("a list", "[]", "object");
    row("unknown member", R"({"rotate":{}})", "\"rotate\"");
    row("resize is no object", R"({"resize":5})", "\"resize\"");
    row("resize has an unknown member", R"({"resize":{"method":"fit","depth":1}})", "\"depth\"");
    row("no method", R"({"resize":{"width":1}})", "method");
    row("unknown method", R"({"resize":{"method":"Fit","width":1,"height":1}})", "method");
    row("no dimension", R"({"resize":{"method":"scale"}})", "width or a height");
    row("fit with one", R"({"resize":{"method":"fit","width":1}})", "width and a height");
    row("cover with one", R"({"resize":{"method":"cover","height":1}})", "width and a height");
    row("thumb with one", R"({"resize":{"method":"thumb","height":1}})", "width and a height");
    row("width 0", R"({"resize":{"method":"scale","width":0}})", "resize.width");
    row("negative height", R"({"resize":{"method":"scale","height":-1}})", "resize.height");
    row("absurd width", R"({"resize":{"method":"scale","width":65536}})", "resize.width");
    row("huge height", R"({"resize":{"method":"scale","height":1e300}})", "resize.height");
    row("half a pixel", R"({"resize":{"method":"scale","width":1.5}})", "whole number");
    row("width as text", R"({"resize":{"method":"scale","width":"9"}})", "whole number");
    row("width null", R"({"resize":{"method":"scale","width":null}})", "whole number");
    row("convert is no object", R"({"convert":"image/png"})", "\"convert\"");
    row("no type", R"({"convert":{}})", "convert.type");
    row("no types", R"({"convert":{"type":[]}})", "convert.type");
    row("unknown type", R"({"convert":{"type":["image/gif"]}})", "convert.type");
    row("type is a number", R"({"convert":{"type":[1]}})", "convert.type");
    row("convert has an unknown member", R"({"convert":{"types":[]}})", "\"types\"");
    row("background missing", R"({"transform":{}})", "background");
    row("short colour", R"({"transform":{"background":"#fff"}})", "background");
    row("colour with a sign", R"({"transform":{"background":"#+12345"}})", "background");
    row("colour of no digits", R"({"transform":{"background":"#ggggggg"}})", "background");
    row("colour's name", R"({"transform":{"background":"pink"}})", "background");
    row("preserve is no list", R"({"preserve":"copyright"})", "\"preserve\"");
    row("unknown to preserve", R"({"preserve":["all"]})", "\"preserve\"");
}

void TestRequestOptions::faults_areNamed()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, named);
    const auto options = parseRequestOptions(body);
    QVERIFY(!options);
    QVERIFY2(options.error().contains(named), qUtf8Printable(options.error()));
    QVERIFY2(options.error().endsWith(QLatin1Char('.')), qUtf8Printable(options.error()));
}

QTEST_GUILESS_MAIN(TestRequestOptions)
#include "tst_requestoptions.moc"
