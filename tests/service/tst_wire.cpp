// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/wire.h"

#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

class WireTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shrinkAnswer_yieldsEveryMember();
    void shrinkAnswer_acceptsLargestIntegers();
    void badShrinkAnswer_namesTheMember_data();
    void badShrinkAnswer_namesTheMember();
    void errorAnswer_yieldsBothTexts();
    void badErrorAnswer_isUndecodable_data();
    void badErrorAnswer_isUndecodable();
    void compressionCount_data();
    void compressionCount();
};

void WireTest::shrinkAnswer_yieldsEveryMember()
{
    const auto response = ShrinkAPIResponse::decode(R"({
        "input": {"size": 207565, "type": "image/jpeg", "other": null},
        "output": {"size": 63669, "type": "image/png", "width": 530, "height": 300,
                   "ratio": 0.307, "url": "https://example.com/output/x"},
        "extra": [1]})");
    QVERIFY(response.has_value());
    QCOMPARE(response->input.size, 207565);
    QCOMPARE(response->input.type, u"image/jpeg"_s);
    QCOMPARE(response->output.size, 63669);
    QCOMPARE(response->output.type, u"image/png"_s);
    QCOMPARE(response->output.width, 530);
    QCOMPARE(response->output.height, 300);
    QCOMPARE(response->output.ratio, 0.307);
}

void WireTest::shrinkAnswer_acceptsLargestIntegers()
{
    const auto response = ShrinkAPIResponse::decode(
        R"({"input":{"size":9223372036854775807,"type":""},)"
        R"("output":{"size":-9223372036854775808,"type":"","width":0,"height":-1,"ratio":1}})");
    QVERIFY(response.has_value());
    QCOMPARE(response->input.size, std::numeric_limits<qint64>::max());
    QCOMPARE(response->output.size, std::numeric_limits<qint64>::min());
    QCOMPARE(response->output.ratio, 1.0);
}

void WireTest::badShrinkAnswer_namesTheMember_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("description");

    const auto output = [](const QByteArray &members) {
        return QByteArray(R"({"input":{"size":1,"type":"t"},"output":{)" + members + "}}");
    };
    const auto lacks = [](const QString &name) {
        return u"The service's answer lacks \"%1\"."_s.arg(name);
    };
    const auto isNot = [](const QString &name, const QString &what) {
        return u"In the service's answer, \"%1\" is not %2."_s.arg(name, what);
    };
    const QString noObject = u"The service's answer is not a JSON object."_s;

    QTest::newRow("empty") << QByteArray() << noObject;
    QTest::newRow("no JSON") << QByteArray("<html>Hello</html>") << noObject;
    QTest::newRow("array") << QByteArray("[]") << noObject;
    QTest::newRow("cut off") << QByteArray(R"({"input":{"size":1,)") << noObject;
    QTest::newRow("no input") << QByteArray(R"({"output":{}})") << lacks(u"input"_s);
    QTest::newRow("input is no object")
        << QByteArray(R"({"input":3})") << isNot(u"input"_s, u"an object"_s);
    QTest::newRow("no input size")
        << QByteArray(R"({"input":{"type":"t"}})") << lacks(u"input.size"_s);
    QTest::newRow("input size with fraction") << QByteArray(R"({"input":{"size":1.5,"type":"t"}})")
                                              << isNot(u"input.size"_s, u"a whole number"_s);
    QTest::newRow("input size beyond 64 bits")
        << QByteArray(R"({"input":{"size":9223372036854775808,"type":"t"}})")
        << isNot(u"input.size"_s, u"a whole number"_s);
    QTest::newRow("input size as text") << QByteArray(R"({"input":{"size":"1","type":"t"}})")
                                        << isNot(u"input.size"_s, u"a whole number"_s);
    QTest::newRow("input size null") << QByteArray(R"({"input":{"size":null,"type":"t"}})")
                                     << isNot(u"input.size"_s, u"a whole number"_s);
    QTest::newRow("no input type")
        << QByteArray(R"({"input":{"size":1}})") << lacks(u"input.type"_s);
    QTest::newRow("input type as number")
        << QByteArray(R"({"input":{"size":1,"type":2}})") << isNot(u"input.type"_s, u"a text"_s);
    QTest::newRow("no output") << QByteArray(R"({"input":{"size":1,"type":"t"}})")
                               << lacks(u"output"_s);
    QTest::newRow("output is no object")
        << QByteArray(R"({"input":{"size":1,"type":"t"},"output":[]})")
        << isNot(u"output"_s, u"an object"_s);
    QTest::newRow("no output size") << output("") << lacks(u"output.size"_s);
    QTest::newRow("no output type") << output(R"("size":1)") << lacks(u"output.type"_s);
    QTest::newRow("no output width")
        << output(R"("size":1,"type":"t")") << lacks(u"output.width"_s);
    QTest::newRow("output width true") << output(R"("size":1,"type":"t","width":true)")
                                       << isNot(u"output.width"_s, u"a whole number"_s);
    QTest::newRow("no output height")
        << output(R"("size":1,"type":"t","width":1)") << lacks(u"output.height"_s);
    QTest::newRow("no output ratio")
        << output(R"("size":1,"type":"t","width":1,"height":1)") << lacks(u"output.ratio"_s);
    QTest::newRow("output ratio as text")
        << output(R"("size":1,"type":"t","width":1,"height":1,"ratio":"0.3")")
        << isNot(u"output.ratio"_s, u"a number"_s);
    QTest::newRow("other letter case")
        << QByteArray(R"({"Input":{},"output":{}})") << lacks(u"input"_s);
    QTest::newRow("first fault counts") << output(R"("type":1)") << lacks(u"output.size"_s);
}

void WireTest::badShrinkAnswer_namesTheMember()
{
    QFETCH(const QByteArray, body);
    QFETCH(const QString, description);
    const auto response = ShrinkAPIResponse::decode(body);
    QVERIFY(!response.has_value());
    QCOMPARE(response.error().description, description);
}

void WireTest::errorAnswer_yieldsBothTexts()
{
    const auto response =
        APIErrorResponse::decode(R"({"error":"InputMissing","message":"File is empty.","x":1})");
    QVERIFY(response.has_value());
    QCOMPARE(response->error, u"InputMissing"_s);
    QCOMPARE(response->message, u"File is empty."_s);
}

void WireTest::badErrorAnswer_isUndecodable_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("page") << QByteArray("<html><body>Too large</body></html>");
    QTest::newRow("no message") << QByteArray(R"({"error":"X"})");
    QTest::newRow("no error") << QByteArray(R"({"message":"X"})");
    QTest::newRow("message is a number") << QByteArray(R"({"error":"X","message":4})");
    QTest::newRow("error is null") << QByteArray(R"({"error":null,"message":"X"})");
    QTest::newRow("array") << QByteArray(R"(["X","Y"])");
}

void WireTest::badErrorAnswer_isUndecodable()
{
    QFETCH(const QByteArray, body);
    QVERIFY(!APIErrorResponse::decode(body).has_value());
}

void WireTest::compressionCount_data()
{
    QTest::addColumn<std::optional<QByteArray>>("header");
    QTest::addColumn<qint64>("count");
    const auto row = [](const char *name, std::optional<QByteArray> header, qint64 count) {
        QTest::newRow(name) << std::move(header) << count;
    };
    row("no header", std::nullopt, 0);
    row("number", "17", 17);
    row("plus", "+17", 17);
    row("minus", "-3", -3);
    row("leading zeros", "0017", 17);
    row("largest", "9223372036854775807", std::numeric_limits<qint64>::max());
    row("smallest", "-9223372036854775808", std::numeric_limits<qint64>::min());
    row("too large", "9223372036854775808", 0);
    row("too small", "-9223372036854775809", 0);
    row("lone plus", "+", 0);
    row("lone minus", "-", 0);
    row("two signs", "+-3", 0);
    row("two pluses", "++3", 0);
    row("blank after", "17 ", 0);
    row("blank before", " 17", 0);
    row("empty", "", 0);
    row("letters", "many", 0);
    row("letters after", "17x", 0);
    row("fraction", "1.5", 0);
    row("hexadecimal", "0x11", 0);
    row("other digits", "\xd9\xa1\xd9\xa7", 0);
    row("NUL", QByteArray("17\0", 3), 0);
}

void WireTest::compressionCount()
{
    QFETCH(const std::optional<QByteArray>, header);
    QFETCH(const qint64, count);
    QCOMPARE(parseCompressionCount(header), count);
}

QTEST_GUILESS_MAIN(WireTest)
#include "tst_wire.moc"
