// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/vipslibrary.h"
#include "localservice/localservice.h"

#include "peer.h"
#include "pictures.h"

#include <QRegularExpression>
#include <QTest>

#include <atomic>
#include <future>
#include <mutex>

using namespace pixpress;
using namespace pixpress::testing;

class TestHttp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void upload_isAnsweredWithItsDescription_data();
    void upload_isAnsweredWithItsDescription();
    void output_isFetched();
    void options_areWorkedFromTheOriginal();
    void options_that_askForNothing_answerTheOutput();
    void refusals_data();
    void refusals();
    void contentTypes_doNotMatter_data();
    void contentTypes_doNotMatter();
    void uploadInChunks_isAccepted();
    void credentials_areRequired_data();
    void credentials_areRequired();
    void emptyKey_admitsNobody();
    void changedKey_countsAtOnce();
    void count_isTold();
    void count_isNotToldWithoutCounting();
    void usedUpLimit_refusesCompressions();
    void pixelLimit_refusesBeforeDecoding();
    void droppedOutput_isNotFound();
    void faults_standInForAnswers();
    void outputOfAnotherService_isNotFound();
    void parallelRequests_areAllAnswered();

private:
    QByteArray m_png;
    QByteArray m_webp;
};

namespace {

struct Service
{
    explicit Service(LocalServiceConfig config = {})
        : service([&] {
              if (!config.key)
                  config.key = [] { return QByteArray("key"); };
              return std::move(config);
          }())
    {
        if (!service.start())
            qFatal("The service does not start.");
    }

    Answer request(const QByteArray &method, const QByteArray &path, const QByteArray &body = {},
                   const QByteArray &key = "key", const Fields &more = {})
    {
        return Peer(service.baseURL()).request(method, path, body, key, more);
    }

    /// Uploads a picture and returns the path of its output.
    QByteArray upload(const QByteArray &picture)
    {
        const Answer answer = request("POST", "/shrink", picture);
        return QUrl(QString::fromLatin1(answer.header("location"))).path().toLatin1();
    }

    LocalService service;
};

void verifyRefusal(const Answer &answer, int status, const QByteArray &error)
{
    QCOMPARE(answer.status, status);
    QCOMPARE(answer.header("content-type"), "application/json");
    QCOMPARE(answer.json().value(QLatin1String("error")).toString().toLatin1(), error);
    const QString message = answer.json().value(QLatin1String("message")).toString();
    QVERIFY2(message.endsWith(QLatin1Char('.')) && message.contains(QLatin1Char(' ')),
             qPrintable(message));
}

} // namespace

void TestHttp::initTestCase()
{
    startVips();
    m_png = saved(photo(120, 80), ImageFormat::png);
    m_webp = saved(photo(90, 60), ImageFormat::webp);
}

void TestHttp::upload_isAnsweredWithItsDescription_data()
{
    QTest::addColumn<ImageFormat>("format");
    for (const ImageFormat format : allCases<ImageFormat>())
        QTest::newRow(qPrintable(rawValue(format))) << format;
}

void TestHttp::upload_isAnsweredWithItsDescription()
{
    QFETCH(ImageFormat, format);
    const QByteArray picture = saved(photo(120, 80), format);
    Service service;
    const Answer answer = service.request("POST", "/shrink", picture);
    QCOMPARE(answer.status, 201);
    QCOMPARE(answer.header("content-type"), "application/json");
    const QString location = QString::fromLatin1(answer.header("location"));
    const QString base = service.service.baseURL().toString();
    static const QRegularExpression id(QStringLiteral("^/output/[0-9a-f]{32}$"));
    QVERIFY2(location.startsWith(base) && id.match(location.mid(base.size())).hasMatch(),
             qPrintable(location));

    const QJsonObject input = answer.json().value(QLatin1String("input")).toObject();
    const QJsonObject output = answer.json().value(QLatin1String("output")).toObject();
    QCOMPARE(input.value(QLatin1String("size")).toInteger(), picture.size());
    QCOMPARE(input.value(QLatin1String("type")).toString(), rawValue(format));
    QCOMPARE(output.value(QLatin1String("type")).toString(), rawValue(format));
    QCOMPARE(output.value(QLatin1String("width")).toInt(), 120);
    QCOMPARE(output.value(QLatin1String("height")).toInt(), 80);
    QCOMPARE(output.value(QLatin1String("url")).toString(), location);
    const auto size = output.value(QLatin1String("size")).toDouble();
    QVERIFY(size > 0 && size <= static_cast<double>(picture.size()));
    const double ratio = output.value(QLatin1String("ratio")).toDouble();
    QVERIFY(qAbs(ratio - size / static_cast<double>(picture.size())) < 0.0001);
}

void TestHttp::output_isFetched()
{
    Service service;
    Peer peer(service.service.baseURL());
    const Answer upload = peer.request("POST", "/shrink", m_png);
    const QJsonObject output = upload.json().value(QLatin1String("output")).toObject();
    const QByteArray path = QUrl(output.value(QLatin1String("url")).toString()).path().toLatin1();
    for (int i = 0; i < 2; ++i) {
        const Answer answer = peer.request("GET", path);
        QCOMPARE(answer.status, 200);
        QCOMPARE(answer.header("content-type"), "image/png");
        QCOMPARE(answer.header("image-width"), "120");
        QCOMPARE(answer.header("image-height"), "80");
        QCOMPARE(answer.body.size(), output.value(QLatin1String("size")).toInteger());
        QCOMPARE(loaded(answer.body).width(), 120);
    }
}

void TestHttp::options_areWorkedFromTheOriginal()
{
    // In few colours the compressed copy would show what it was worked from.
    Service service;
    vips::VImage tagged = quarters(200, 100).copy();
    tagged.set("exif-ifd0-Copyright", "Ada Example");
    const QByteArray path = service.upload(saved(tagged, ImageFormat::jpeg));
    const Answer answer = service.request(
        "POST", path,
        R"({"resize":{"method":"fit","width":50,"height":50},"convert":{"type":["image/webp"]},)"
        R"("transform":{"background":"#ffffff"},"preserve":["copyright"]})",
        "key", {{"Content-Type", "application/json"}});
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.header("content-type"), "image/webp");
    QCOMPARE(answer.header("image-width"), "50");
    QCOMPARE(answer.header("image-height"), "25");
    const vips::VImage image = loaded(answer.body);
    QCOMPARE(image.width(), 50);
    QCOMPARE(image.height(), 25);
    // Of the compressed copy this is gone.
    QVERIFY(field(image, "exif-ifd0-Copyright").startsWith("Ada Example"));
    QVERIFY(!service.request("GET", path).body.contains("Ada Example"));
}

void TestHttp::options_that_askForNothing_answerTheOutput()
{
    Service service;
    const QByteArray path = service.upload(m_webp);
    const Answer worked = service.request("POST", path, "{}");
    QCOMPARE(worked.status, 200);
    QCOMPARE(worked.body, service.request("GET", path).body);
}

void TestHttp::refusals_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QByteArray>("path"); // "@": of an output that exists.
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("error");

    const auto row = [](const char *name, const char *method, const char *path,
                        const QByteArray &body, int status, const char *error) {
        QTest::newRow(name) << QByteArray(method) << QByteArray(path) << body << status
                            << QByteArray(error);
    };
    row("key check", "POST", "/shrink", "", 400, "InputMissing");
    row("no options", "POST", "@", "", 400, "InputMissing");
    row("broken JSON", "POST", "@", "{\"resize\"", 400, "BadRequest");
    row("unknown option", "POST", "@", R"({"rotate":{}})", 400, "BadRequest");
    row("contradicting options", "POST", "@", R"({"resize":{"method":"fit","width":3}})", 400,
        "BadRequest");
    row("size below 1", "POST", "@", R"({"resize":{"method":"scale","width":0}})", 400,
        "BadRequest");
    row("absurd size", "POST", "@", R"({"resize":{"method":"cover","width":65535,"height":65535}})",
        400, "BadRequest");
    row("no picture", "POST", "/shrink", "no picture at all", 415, "UnsupportedMediaType");
    row("half a picture", "POST", "/shrink", m_png.first(m_png.size() / 2), 415,
        "UnsupportedMediaType");
    row("animated PNG", "POST", "/shrink", asAnimatedPng(m_png), 415, "UnsupportedMediaType");
    row("unknown output", "GET", "/output/0123456789abcdef0123456789abcdef", "", 404, "NotFound");
    row("no output", "GET", "/output/", "", 404, "NotFound");
    row("options for an unknown output", "POST", "/output/0123456789abcdef0123456789abcdef", "{}",
        404, "NotFound");
    row("options longer than any", "POST", "@", QByteArray(2'000'000, ' '), 413, "TooLarge");
    row("root", "GET", "/", "", 404, "NotFound");
    row("other path", "POST", "/expand", "x", 404, "NotFound");
    row("longer path", "GET", "/output", "", 404, "NotFound");
    row("parent path", "GET", "/output/../../etc/passwd", "", 404, "NotFound");
    row("upload by GET", "GET", "/shrink", "", 405, "MethodNotAllowed");
    row("upload by PUT", "PUT", "/shrink", "x", 405, "MethodNotAllowed");
    row("output deleted", "DELETE", "@", "", 405, "MethodNotAllowed");
}

void TestHttp::refusals()
{
    QFETCH(QByteArray, method);
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    QFETCH(QByteArray, error);
    Service service;
    if (path == "@")
        path = service.upload(m_webp);
    verifyRefusal(service.request(method, path, body), status, error);
}

void TestHttp::contentTypes_doNotMatter_data()
{
    QTest::addColumn<QByteArray>("type");
    for (const char *type : {"image/png", "image/jpeg", "application/octet-stream",
                             "application/x-www-form-urlencoded", "text/plain"})
        QTest::newRow(type) << QByteArray(type);
}

void TestHttp::contentTypes_doNotMatter()
{
    QFETCH(QByteArray, type);
    const QByteArray picture = saved(noise(200, 200), ImageFormat::png); // More than 100 kB.
    Service service;
    QCOMPARE(service.request("POST", "/shrink", picture, "key", {{"Content-Type", type}}).status,
             201);
}

void TestHttp::uploadInChunks_isAccepted()
{
    Service service;
    Peer peer(service.service.baseURL());
    QByteArray chunks;
    for (qsizetype at = 0; at < m_png.size(); at += 1000) {
        const QByteArray chunk = m_png.mid(at, 1000);
        chunks += QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n";
    }
    peer.send(head("POST", "/shrink",
                   {{"Authorization", credentials("key")}, {"Transfer-Encoding", "chunked"}}) +
              chunks + "0\r\n\r\n");
    QCOMPARE(peer.receive().status, 201);
    QCOMPARE(peer.request("GET", "/nowhere").status, 404);
}

void TestHttp::credentials_areRequired_data()
{
    QTest::addColumn<QByteArray>("value"); // Of the field; null for none.
    QTest::newRow("none") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("other key") << credentials("kez");
    QTest::newRow("beginning of the key") << credentials("ke");
    QTest::newRow("longer key") << credentials("key2");
    QTest::newRow("no key") << credentials("");
    QTest::newRow("other user") << credentials("key", "apj");
    QTest::newRow("no user") << credentials("key", "");
    QTest::newRow("other scheme") << QByteArray("Bearer key");
    QTest::newRow("no Base64") << QByteArray("Basic api:key");
    QTest::newRow("scheme alone") << QByteArray("Basic");
}

void TestHttp::credentials_areRequired()
{
    QFETCH(QByteArray, value);
    Service service;
    const QByteArray output = service.upload(m_webp);
    const Fields fields = value.isNull() ? Fields{} : Fields{{"Authorization", value}};
    for (const auto &[method, path, body] :
         {std::tuple("POST", QByteArray("/shrink"), m_webp),
          std::tuple("POST", QByteArray("/shrink"), QByteArray()),
          std::tuple("GET", output, QByteArray()), std::tuple("POST", output, QByteArray("{}")),
          std::tuple("GET", QByteArray("/nowhere"), QByteArray())}) {
        verifyRefusal(service.request(method, path, body, QByteArray(), fields), 401,
                      "Unauthorized");
    }
    QCOMPARE(service.service.compressionCount(), 1);
}

void TestHttp::emptyKey_admitsNobody()
{
    LocalServiceConfig config;
    config.key = [] { return QByteArray(); };
    Service service(config);
    QCOMPARE(service.request("POST", "/shrink", m_webp, "").status, 401);
    QCOMPARE(service.request("POST", "/shrink", m_webp, "key").status, 401);
}

void TestHttp::changedKey_countsAtOnce()
{
    std::mutex mutex;
    QByteArray key = "first";
    LocalServiceConfig config;
    config.key = [&] {
        const std::lock_guard lock(mutex);
        return key;
    };
    Service service(config);
    Peer peer(service.service.baseURL());
    QCOMPARE(peer.request("POST", "/shrink", {}, "first").status, 400);
    {
        const std::lock_guard lock(mutex);
        key = "second";
    }
    QCOMPARE(peer.request("POST", "/shrink", {}, "first").status, 401);
    QCOMPARE(peer.request("POST", "/shrink", {}, "second").status, 400);
}

void TestHttp::count_isTold()
{
    LocalServiceConfig config;
    config.counting = true;
    config.initialCount = 41;
    Service service(config);
    Peer peer(service.service.baseURL());
    const auto countAfter = [&](const QByteArray &method, const QByteArray &path,
                                const QByteArray &body = {}) {
        return peer.request(method, path, body).header("compression-count");
    };
    QCOMPARE(countAfter("POST", "/shrink"), "41");
    QCOMPARE(countAfter("POST", "/shrink", m_webp), "42");
    const QByteArray path = service.upload(m_webp);
    QCOMPARE(countAfter("GET", path), "43");
    QCOMPARE(countAfter("POST", path, R"({"resize":{"method":"scale","width":9}})"), "44");
    QCOMPARE(countAfter("POST", "/shrink", "no picture"), "44");
    QCOMPARE(service.service.compressionCount(), 44);
}

void TestHttp::count_isNotToldWithoutCounting()
{
    Service service;
    QVERIFY(!service.request("POST", "/shrink", m_webp).headers.contains("compression-count"));
}

void TestHttp::usedUpLimit_refusesCompressions()
{
    LocalServiceConfig config;
    config.counting = true;
    config.initialCount = 8;
    config.monthlyLimit = 10;
    Service service(config);
    QCOMPARE(service.request("POST", "/shrink", m_webp).status, 201);
    const QByteArray path = service.upload(m_webp);
    const Answer answer = service.request("POST", "/shrink", m_webp);
    verifyRefusal(answer, 429, "TooManyRequests");
    QCOMPARE(answer.header("compression-count"), "10");
    QCOMPARE(service.request("POST", "/shrink").status, 400);
    QCOMPARE(service.request("GET", path).status, 200);
}

void TestHttp::pixelLimit_refusesBeforeDecoding()
{
    LocalServiceConfig config;
    config.maxPixels = 9999;
    Service service(config);
    QCOMPARE(service.request("POST", "/shrink", saved(plain(99, 101, {1, 2, 3}), ImageFormat::png))
                 .status,
             201);
    // Its pixels are missing: only who decodes would notice.
    const QByteArray whole = saved(plain(100, 100, {1, 2, 3}), ImageFormat::png);
    verifyRefusal(service.request("POST", "/shrink", whole.first(60)), 413, "TooLarge");
    QCOMPARE(service.request("POST", "/shrink", animatedWebp(50, 50, 4)).status, 413);
}

void TestHttp::droppedOutput_isNotFound()
{
    LocalServiceConfig config;
    config.storeBytes = 1;
    Service service(config);
    const QByteArray first = service.upload(m_webp);
    QCOMPARE(service.request("GET", first).status, 200);
    const QByteArray second = service.upload(m_webp);
    QCOMPARE(service.request("GET", first).status, 404);
    QCOMPARE(service.request("POST", first, "{}").status, 404);
    QCOMPARE(service.request("GET", second).status, 200);
}

void TestHttp::faults_standInForAnswers()
{
    std::atomic<int> asked = 0;
    LocalServiceConfig config;
    config.fault = [&](const QByteArray &method,
                       const QByteArray &path) -> std::optional<LocalServiceFault> {
        if (method == "POST" && path == "/shrink" && ++asked <= 2)
            return LocalServiceFault{503, R"({"error":"Busy","message":"Come back later."})"};
        return std::nullopt;
    };
    Service service(config);
    Peer peer(service.service.baseURL());
    verifyRefusal(peer.request("POST", "/shrink", m_webp), 503, "Busy");
    verifyRefusal(peer.request("POST", "/shrink"), 503, "Busy");
    QCOMPARE(peer.request("POST", "/shrink", m_webp).status, 201);
    QCOMPARE(service.service.compressionCount(), 1);
}

void TestHttp::outputOfAnotherService_isNotFound()
{
    Service one;
    Service other;
    QVERIFY(one.service.baseURL() != other.service.baseURL());
    QCOMPARE(other.request("GET", one.upload(m_webp)).status, 404);
}

void TestHttp::parallelRequests_areAllAnswered()
{
    Service service;
    const auto work = [&](int index) {
        Peer peer(service.service.baseURL());
        const QByteArray picture =
            saved(plain(100 + index, 60, {9.0 * index, 50, 60}), ImageFormat::png);
        for (int i = 0; i < 5; ++i) {
            const Answer upload = peer.request("POST", "/shrink", picture);
            const QByteArray path =
                QUrl(QString::fromLatin1(upload.header("location"))).path().toLatin1();
            const Answer small =
                peer.request("POST", path, R"({"resize":{"method":"scale","width":50}})");
            if (peer.request("GET", path).header("image-width") !=
                    QByteArray::number(100 + index) ||
                small.header("image-width") != "50")
                return false;
        }
        return true;
    };
    std::vector<std::future<bool>> workers;
    for (int i = 0; i < 8; ++i)
        workers.push_back(std::async(std::launch::async, work, i));
    for (auto &worker : workers)
        QVERIFY(worker.get());
    QCOMPARE(service.service.compressionCount(), 80);
}

QTEST_GUILESS_MAIN(TestHttp)
#include "tst_http.moc"
