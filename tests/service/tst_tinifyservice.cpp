// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/tinifyservice.h"

#include "support/scriptedserver.h"

#include <QJsonDocument>
#include <QTcpSocket>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QByteArray explanation = R"({"error":"Name","message":"In its own words."})";

ServiceConfig configFor(const ScriptedServer &server)
{
    return {.baseURL = server.url(), .limits = {}};
}

template <typename T>
QString failure(const TinifyService::Result<T> &result)
{
    return result ? u"no failure"_s : errorDescription(result.error());
}

} // namespace

class TinifyServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaults_areTheServicesOwn();

    void shrink_postsTheImageWithTheKey();
    void shrink_returnsWhatTheServiceTold();
    void shrinkWithEmptyKey_sendsNothing();
    void shrinkWithBlankKey_isSent();
    void shrinkWithBadLocation_isInvalid_data();
    void shrinkWithBadLocation_isInvalid();
    void shrinkWithRelativeLocation_isResolved();
    void shrinkWithBadBody_passesTheDecodersError();

    void fetchOutput_getsOrPosts_data();
    void fetchOutput_getsOrPosts();
    void fetchOutput_returnsBytesAndCount();

    void failureStatus_isMapped_data();
    void failureStatus_isMapped();
    void endlessFailure_isMappedByItsStatus_data();
    void endlessFailure_isMappedByItsStatus();
    void endlessDescription_isRefused();
    void repeatedCount_isNone();
    void noHTTP_isInvalid();
    void transportError_passesThrough();

    void validateAPIKey_isAboutTheKeyOnly_data();
    void validateAPIKey_isAboutTheKeyOnly();
};

void TinifyServiceTest::defaults_areTheServicesOwn()
{
    const ServiceConfig config;
    QCOMPARE(config.baseURL, QUrl(u"https://api.tinify.com"_s));
    QCOMPARE(config.limits.longestSilence, std::chrono::seconds(60));
    QCOMPARE(config.limits.longestTransfer, std::chrono::seconds(600));
}

void TinifyServiceTest::shrink_postsTheImageWithTheKey()
{
    ScriptedServer server([](const Request &) { return Answer{.status = 500}; });
    TinifyService service(configFor(server));
    QCoro::waitFor(service.shrink("image", u"abc"_s));
    QCoro::waitFor(service.shrink("image", u"schlüssel"_s));
    QCOMPARE(server.requests.size(), 2);
    QCOMPARE(server.requests[0].method, "POST");
    QCOMPARE(server.requests[0].target, "/shrink");
    QCOMPARE(server.requests[0].body, "image");
    QCOMPARE(server.requests[0].headers.value("authorization"), "Basic YXBpOmFiYw==");
    QVERIFY(!server.requests[0].headers.contains("content-type"));
    QCOMPARE(server.requests[1].headers.value("authorization"),
             "Basic " + QByteArray("api:schl\xc3\xbcssel").toBase64());
}

void TinifyServiceTest::shrink_returnsWhatTheServiceTold()
{
    const QUrl output(u"https://api.tinify.com/output/x"_s);
    ScriptedServer server([&](const Request &) { return shrinkAnswer(output, 17); });
    TinifyService service(configFor(server));
    const auto response = QCoro::waitFor(service.shrink("image", u"key"_s));
    QVERIFY2(response.has_value(), qPrintable(failure(response)));
    QCOMPARE(response->outputURL, output);
    QCOMPARE(response->inputSize, 1000);
    QCOMPARE(response->inputType, u"image/png"_s);
    QCOMPARE(response->outputSize, 371);
    QCOMPARE(response->outputType, u"image/png"_s);
    QCOMPARE(response->outputWidth, 40);
    QCOMPARE(response->outputHeight, 30);
    QCOMPARE(response->compressionCount, 17);

    server.setScript([&](const Request &) { return shrinkAnswer(output); });
    QCOMPARE(QCoro::waitFor(service.shrink("image", u"key"_s))->compressionCount, 0);
}

void TinifyServiceTest::shrinkWithEmptyKey_sendsNothing()
{
    ScriptedServer server;
    TinifyService service(configFor(server));
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u""_s))), u"No API key configured"_s);
    QCOMPARE(server.connections, 0);
}

void TinifyServiceTest::shrinkWithBlankKey_isSent()
{
    ScriptedServer server([](const Request &) { return Answer{.status = 401}; });
    TinifyService service(configFor(server));
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u" "_s))), u"Invalid API key"_s);
    QCOMPARE(server.requests.size(), 1);
}

void TinifyServiceTest::shrinkWithBadLocation_isInvalid_data()
{
    QTest::addColumn<std::optional<QByteArray>>("location");
    QTest::newRow("missing") << std::optional<QByteArray>();
    QTest::newRow("empty") << std::optional<QByteArray>("");
    QTest::newRow("no URL") << std::optional<QByteArray>("http://[");
    QTest::newRow("no host") << std::optional<QByteArray>("https:///x");
    QTest::newRow("two") << std::optional<QByteArray>("/one\r\nLocation: /two");
    QTest::newRow("bad port") << std::optional<QByteArray>("https://host:99999999/");
}

void TinifyServiceTest::shrinkWithBadLocation_isInvalid()
{
    QFETCH(const std::optional<QByteArray>, location);
    ScriptedServer server([&](const Request &) {
        Answer answer = shrinkAnswer({});
        answer.headers.clear();
        if (location)
            answer.headers.append({"Location", *location});
        return answer;
    });
    TinifyService service(configFor(server));
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u"key"_s))),
             u"Invalid server response"_s);
}

void TinifyServiceTest::shrinkWithRelativeLocation_isResolved()
{
    ScriptedServer server([](const Request &) { return shrinkAnswer(QUrl(u"/output/x"_s)); });
    TinifyService service(configFor(server));
    QCOMPARE(QCoro::waitFor(service.shrink("image", u"key"_s))->outputURL,
             server.url(u"/output/x"_s));
}

void TinifyServiceTest::shrinkWithBadBody_passesTheDecodersError()
{
    ScriptedServer server([](const Request &) {
        return Answer{.status = 201,
                      .body = R"({"input":{"size":1,"type":"image/png"}})",
                      .headers = {{"Location", "https://example.com/x"}}};
    });
    TinifyService service(configFor(server));
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u"key"_s))),
             u"The service's answer lacks \"output\"."_s);
}

void TinifyServiceTest::fetchOutput_getsOrPosts_data()
{
    QTest::addColumn<std::optional<CompressionOptions>>("options");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const CompressionOptions &options,
                        const QByteArray &body) {
        QTest::newRow(name) << std::optional(options) << QByteArray(body.isEmpty() ? "GET" : "POST")
                            << body;
    };
    QTest::newRow("no options") << std::optional<CompressionOptions>() << QByteArray("GET")
                                << QByteArray();
    row("defaults", {}, "");
    row("only the destination", {.outputDestination = OutputDestination::overwrite}, "");
    row("only the folder", {.customFolderURL = QUrl(u"file:///tmp"_s)}, "");
    row("only the background", {.backgroundColor = u"#000000"_s}, "");
    row("resize without dimension", {.resizeEnabled = true}, "");
    row("dimensions without resize", {.resizeWidth = 1, .resizeHeight = 2}, "");
    row("format without conversion", {.convertFormat = ImageFormat::jpeg}, "");
    row("one dimension", {.resizeEnabled = true, .resizeWidth = 7},
        R"({"resize":{"method":"scale","width":7}})");
    row("two dimensions", {.resizeEnabled = true, .resizeWidth = 7, .resizeHeight = 9},
        R"({"resize":{"height":9,"method":"fit","width":7}})");
    row("conversion", {.convertEnabled = true}, R"({"convert":{"type":["image/webp"]}})");
    row("conversion without transparency",
        {.convertEnabled = true, .convertFormat = ImageFormat::jpeg},
        R"({"convert":{"type":["image/jpeg"]},"transform":{"background":"#ffffff"}})");
    row("copyright", {.preserveCopyright = true}, R"({"preserve":["copyright"]})");
    row("creation", {.preserveCreation = true}, R"({"preserve":["creation"]})");
    row("location", {.preserveLocation = true}, R"({"preserve":["location"]})");
}

void TinifyServiceTest::fetchOutput_getsOrPosts()
{
    QFETCH(const std::optional<CompressionOptions>, options);
    QFETCH(const QByteArray, method);
    QFETCH(const QByteArray, body);
    ScriptedServer server([](const Request &) { return Answer{}; });
    TinifyService service(configFor(server));
    const auto output =
        QCoro::waitFor(service.fetchOutput(server.url(u"/output/x"_s), options, u"abc"_s));
    QVERIFY2(output.has_value(), qPrintable(failure(output)));
    QCOMPARE(server.requests.size(), 1);
    const Request &request = server.requests[0];
    QCOMPARE(request.method, method);
    QCOMPARE(request.target, "/output/x");
    QCOMPARE(QJsonDocument::fromJson(request.body), QJsonDocument::fromJson(body));
    QCOMPARE(request.body.isEmpty(), body.isEmpty());
    QCOMPARE(request.headers.value("content-type"),
             body.isEmpty() ? QByteArray() : QByteArray("application/json"));
    QCOMPARE(request.headers.value("authorization"), "Basic YXBpOmFiYw==");
}

void TinifyServiceTest::fetchOutput_returnsBytesAndCount()
{
    Answer answer{.body = QByteArray("by\0tes", 6), .headers = {{"COMPRESSION-COUNT", "18"}}};
    ScriptedServer server([&](const Request &) { return answer; });
    TinifyService service(configFor(server));
    auto output = QCoro::waitFor(service.fetchOutput(server.url(u"/o"_s), {}, u"key"_s));
    QCOMPARE(output->first, QByteArray("by\0tes", 6));
    QCOMPARE(output->second, 18);

    answer.headers.clear();
    output = QCoro::waitFor(service.fetchOutput(server.url(u"/o"_s), {}, u"key"_s));
    QCOMPARE(output->second, 0);
}

void TinifyServiceTest::failureStatus_isMapped_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("text");

    struct Row
    {
        int status;
        const char *unexplained;
        const char *explained;
    };
    static constexpr Row rows[] = {
        {401, "Invalid API key", "Invalid API key"},
        {429, "Monthly compression limit reached (500/month)",
         "Monthly compression limit reached (500/month)"},
        {413, "File exceeds 500 MB limit", "API error (413): In its own words."},
        {415, "Unsupported image format", "API error (415): In its own words."},
        {202, "API error (202): Unknown error", "API error (202): In its own words."},
        {204, "API error (204): Unknown error", nullptr}, // has no body
        {400, "API error (400): Unknown error", "API error (400): In its own words."},
        {403, "API error (403): Unknown error", "API error (403): In its own words."},
        {404, "API error (404): Unknown error", "API error (404): In its own words."},
        {422, "API error (422): Unknown error", "API error (422): In its own words."},
        {500, "API error (500): Unknown error", "API error (500): In its own words."},
        {503, "API error (503): Unknown error", "API error (503): In its own words."},
    };
    for (const Row &row : rows) {
        QTest::addRow("%d", row.status)
            << row.status << QByteArray() << QString::fromLatin1(row.unexplained);
        if (!row.explained)
            continue;
        QTest::addRow("%d page", row.status)
            << row.status << QByteArray("<html></html>") << QString::fromLatin1(row.unexplained);
        QTest::addRow("%d without message", row.status)
            << row.status << QByteArray(R"({"error":"Name"})")
            << QString::fromLatin1(row.unexplained);
        QTest::addRow("%d explained", row.status)
            << row.status << explanation << QString::fromLatin1(row.explained);
    }
}

void TinifyServiceTest::failureStatus_isMapped()
{
    QFETCH(const int, status);
    QFETCH(const QByteArray, body);
    QFETCH(const QString, text);
    ScriptedServer server([&](const Request &) { return Answer{.status = status, .body = body}; });
    TinifyService service(configFor(server));
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u"key"_s))), text);
    QCOMPARE(failure(QCoro::waitFor(service.fetchOutput(server.url(), {}, u"key"_s))), text);

    // The one status that each operation wants is a failure of the other.
    server.setScript([](const Request &) { return Answer{.status = 200}; });
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u"key"_s))),
             u"API error (200): Unknown error"_s);
    server.setScript([](const Request &) { return Answer{.status = 201}; });
    QCOMPARE(failure(QCoro::waitFor(service.fetchOutput(server.url(), {}, u"key"_s))),
             u"API error (201): Unknown error"_s);
}

void TinifyServiceTest::endlessFailure_isMappedByItsStatus_data()
{
    QTest::addColumn<QByteArray>("length");
    QTest::newRow("announced") << QByteArray("Content-Length: 1073741824\r\n");
    QTest::newRow("not announced") << QByteArray();
}

void TinifyServiceTest::endlessFailure_isMappedByItsStatus()
{
    QFETCH(const QByteArray, length);
    ScriptedServer server;
    qint64 sent = 0;
    server.setRaw([&](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 413 Too Large\r\n" + length + "\r\n{\"error\":\"");
        connect(&socket, &QTcpSocket::bytesWritten, &socket, [&](qint64 bytes) {
            sent += bytes;
            socket.write(QByteArray(100'000, 'x'));
        });
    });
    TinifyService service(configFor(server));
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u"key"_s))),
             u"File exceeds 500 MB limit"_s);
    QCOMPARE(failure(QCoro::waitFor(service.fetchOutput(server.url(), {}, u"key"_s))),
             u"File exceeds 500 MB limit"_s);
    QVERIFY2(sent < 100'000'000, qPrintable(QString::number(sent)));
}

void TinifyServiceTest::endlessDescription_isRefused()
{
    ScriptedServer server(
        [](const Request &) { return Answer{.status = 201, .body = QByteArray(10'000'000, ' ')}; });
    TinifyService service(configFor(server));
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u"key"_s))),
             u"The server's answer is too large."_s);
}

void TinifyServiceTest::repeatedCount_isNone()
{
    ScriptedServer server([&](const Request &) {
        Answer answer = shrinkAnswer(server.url(u"/output"_s), 3);
        answer.headers.append({QByteArray("compression-count"), QByteArray("400")});
        return answer;
    });
    TinifyService service(configFor(server));
    QCOMPARE(QCoro::waitFor(service.shrink("image", u"key"_s))->compressionCount, 0);
}

void TinifyServiceTest::noHTTP_isInvalid()
{
    ScriptedServer server;
    server.setRaw([](QTcpSocket &socket, const QByteArray &) {
        socket.write("220 mail.example.com ESMTP\r\n");
        socket.disconnectFromHost();
    });
    const QString invalid = u"Invalid server response"_s;
    TinifyService service(configFor(server));
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u"key"_s))), invalid);
    QCOMPARE(failure(QCoro::waitFor(service.fetchOutput(server.url(), {}, u"key"_s))), invalid);
    QCOMPARE(failure(QCoro::waitFor(service.validateAPIKey(u"key"_s))), invalid);
}

void TinifyServiceTest::transportError_passesThrough()
{
    ScriptedServer server;
    server.setRaw([](QTcpSocket &socket, const QByteArray &) { socket.close(); });
    const QString lost = u"The network connection was lost."_s;
    TinifyService service(configFor(server));
    QCOMPARE(failure(QCoro::waitFor(service.shrink("image", u"key"_s))), lost);
    QCOMPARE(failure(QCoro::waitFor(service.fetchOutput(server.url(), {}, u"key"_s))), lost);
    QCOMPARE(failure(QCoro::waitFor(service.validateAPIKey(u"key"_s))), lost);
    QCOMPARE(
        failure(QCoro::waitFor(service.fetchOutput(QUrl(u"http://example.com"_s), {}, u"key"_s))),
        u"The server named an address that is not secure, so nothing was sent there."_s);
}

void TinifyServiceTest::validateAPIKey_isAboutTheKeyOnly_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<bool>("valid");
    for (const int status : {200, 201, 400, 403, 413, 415, 429, 500})
        QTest::addRow("%d", status) << status << true;
    QTest::newRow("401") << 401 << false;
}

void TinifyServiceTest::validateAPIKey_isAboutTheKeyOnly()
{
    QFETCH(const int, status);
    QFETCH(const bool, valid);
    ScriptedServer server([&](const Request &) { return Answer{.status = status}; });
    TinifyService service(configFor(server));
    const auto result = QCoro::waitFor(service.validateAPIKey(u"abc"_s));
    QVERIFY2(result.has_value(), qPrintable(failure(result)));
    QCOMPARE(*result, valid);
    QCOMPARE(server.requests.size(), 1);
    QCOMPARE(server.requests[0].method, "POST");
    QCOMPARE(server.requests[0].target, "/shrink");
    QVERIFY(server.requests[0].body.isEmpty());
    QCOMPARE(server.requests[0].headers.value("authorization"), "Basic YXBpOmFiYw==");
}

QTEST_GUILESS_MAIN(TinifyServiceTest)
#include "tst_tinifyservice.moc"
