// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/program.h"
#include "pipeline/settings.h"

#include "support/scriptedserver.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDirIterator>
#include <QSettings>
#include <QTcpSocket>
#include <QTest>

#include <sys/resource.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

const QString key = u"KvPR7wnT2mJXkQ4tYbLhC9sD1fGzNx80"_s;
const QByteArray authorization = "Basic " + ("api:" + key.toUtf8()).toBase64();

bool tellsTheKey(const QByteArray &text)
{
    return text.contains(key.toUtf8()) || text.contains(authorization.mid(6)) ||
           text.contains(authorization.mid(14, 24)); // in base64, whatever is before it
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// The program with the remote service, at an address of the test's own, and with a stored key.
class RemoteTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void success_usesTheKeyAndStoresTheCount();
    void countOfTheLimit_refusesTheRest();
    void absurdSizes_haveATotal();
    void refusal_isReported_data();
    void refusal_isReported();
    void badAddress_isFatal();
    void everythingWritten_isWithoutTheKey_data();
    void everythingWritten_isWithoutTheKey();

private:
    Outcome run(const QStringList &arguments, const QUrl &service);
    QStringList filesThatTellTheKey() const;
    QString settingsPath() const { return m_program->home() + u"/Pixpress/Pixpress.json"_s; }

    std::unique_ptr<Program> m_program;
    std::unique_ptr<ScriptedServer> m_server;
    QByteArray m_seen; ///< What /proc shows of the running program.
};

void RemoteTest::init()
{
    m_program = std::make_unique<Program>();
    m_seen.clear();
    m_server = std::make_unique<ScriptedServer>([this](const Request &request) {
        return request.target == "/shrink" ? shrinkAnswer(m_server->url(u"/output"_s), 41)
                                           : Answer{.body = "output"};
    });
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_program->home());
    UserSettings settings;
    KeychainHelper::saveAPIKey(settings, key);
    for (const QString &name : {u"a.png"_s, u"b.png"_s})
        m_program->copySample(u"island map.png"_s, name);
}

/// Runs the program while this process serves.
Outcome RemoteTest::run(const QStringList &arguments, const QUrl &service)
{
    QProcess process;
    m_program->prepare(process, {u"TMPDIR="_s + m_program->home(),
                                 u"XDG_CACHE_HOME="_s + m_program->home() + u"/cache"_s,
                                 u"XDG_RUNTIME_DIR="_s + m_program->home()});
    process.setChildProcessModifier([] {
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
    });
    process.start(QStringLiteral(PIXPRESS_CLI_AT),
                  QStringList(QString::fromLatin1(service.toEncoded())) + arguments);
    if (!process.waitForStarted())
        return {};
    const QString proc = u"/proc/%1/"_s.arg(process.processId());
    const auto look = [&] {
        m_seen += contentOf(proc + u"cmdline"_s) + contentOf(proc + u"environ"_s);
    };
    // A program counts as started a moment before the system knows its arguments.
    const QDeadlineTimer patience(10'000);
    while (!m_seen.contains("pixpress-cli-at") && !patience.hasExpired())
        look();
    const bool ended = QTest::qWaitFor(
        [&] {
            if (!m_server->requests.isEmpty())
                look();
            return process.state() == QProcess::NotRunning;
        },
        120'000);
    return {.status =
                ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            .out = process.readAllStandardOutput(),
            .err = process.readAllStandardError()};
}

QStringList RemoteTest::filesThatTellTheKey() const
{
    QStringList names;
    for (const QString &folder : {m_program->home(), m_program->path(u""_s)}) {
        QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::System,
                           QDirIterator::Subdirectories);
        while (files.hasNext())
            if (tellsTheKey(contentOf(files.next())))
                names.append(files.filePath());
    }
    return names;
}

void RemoteTest::success_usesTheKeyAndStoresTheCount()
{
    const Outcome outcome =
        run({u"--remote"_s, u"--json"_s, u"a.png"_s, u"b.png"_s}, m_server->url());
    QCOMPARE(outcome.err, "");
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.out.count(R"("status":"completed")"), 2);
    QCOMPARE(m_program->content(u"a-pixpress.png"_s), "output");
    QCOMPARE(m_program->content(u"b-pixpress.png"_s), "output");
    QCOMPARE(m_server->requests.size(), 4);
    for (const Request &request : std::as_const(m_server->requests))
        QCOMPARE(request.headers.value("authorization"), authorization);
    UserSettings settings;
    QCOMPARE(settings.value(u"pixpress_quota_count"_s).toInt(), 41);
    QCOMPARE(settings.value(u"pixpress_quota_month"_s).toString(),
             QDateTime::currentDateTime().toString(u"yyyy-MM"_s));
    QCOMPARE(KeychainHelper::loadAPIKey(settings), key);
}

void RemoteTest::countOfTheLimit_refusesTheRest()
{
    m_server->setScript([this](const Request &request) {
        return request.target == "/shrink" ? shrinkAnswer(m_server->url(u"/output"_s), 500)
                                           : Answer{.body = "output"};
    });
    for (const QString &name : {u"c.png"_s, u"d.png"_s, u"e.png"_s})
        m_program->copySample(u"island map.png"_s, name);
    const Outcome outcome =
        run({u"--remote"_s, u"a.png"_s, u"b.png"_s, u"c.png"_s, u"d.png"_s, u"e.png"_s},
            m_server->url());
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.out.count("Failed: Monthly quota exhausted\n"), 2); // three were under way
    QVERIFY(outcome.out.contains("3 files compressed"));
    QCOMPARE(UserSettings().value(u"pixpress_quota_count"_s).toInt(), 500);
}

void RemoteTest::absurdSizes_haveATotal()
{
    m_server->setScript([this](const Request &request) {
        Answer answer = shrinkAnswer(m_server->url(u"/output"_s));
        answer.body.replace("1000", "9000000000000000000");
        return request.target == "/shrink" ? answer : Answer{.body = "output"};
    });
    const Outcome outcome = run({u"--remote"_s, u"a.png"_s, u"b.png"_s}, m_server->url());
    QCOMPARE(outcome.status, 0);
    QVERIFY2(outcome.out.contains("2 files compressed, 9223372.04 TB -> "), outcome.out);
}

void RemoteTest::refusal_isReported_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("sentence");
    QTest::newRow("401") << 401 << QByteArray("Invalid API key");
    QTest::newRow("413") << 413 << QByteArray("File exceeds 500 MB limit");
    QTest::newRow("415") << 415 << QByteArray("Unsupported image format");
    QTest::newRow("429") << 429 << QByteArray("Monthly compression limit reached (500/month)");
    QTest::newRow("503") << 503 << QByteArray("API error (503): Unknown error");
}

void RemoteTest::refusal_isReported()
{
    QFETCH(const int, status);
    QFETCH(const QByteArray, sentence);
    m_server->setScript([&](const Request &) { return Answer{.status = status}; });
    const Outcome outcome = run({u"--remote"_s, u"a.png"_s, u"b.png"_s}, m_server->url());
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.out,
             "a.png  Failed: " + sentence + "\nb.png  Failed: " + sentence + "\n2 files failed.\n");
    QCOMPARE(outcome.err, "");
    QCOMPARE(m_server->requests.size(), 2);
    QCOMPARE(m_program->files(), QStringList({u"a.png"_s, u"b.png"_s}));
    QCOMPARE(KeychainHelper::loadAPIKey(UserSettings()), key); // it may be good again tomorrow
}

void RemoteTest::badAddress_isFatal()
{
    const Outcome outcome = run({u"--remote"_s, u"a.png"_s}, QUrl(u"http://example.com"_s));
    QCOMPARE(outcome.status, -1);
    QVERIFY2(outcome.err.contains("must be https"), outcome.err);
    QVERIFY(!tellsTheKey(outcome.err));
}

void RemoteTest::everythingWritten_isWithoutTheKey_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("answer"); // in place of the service's
    const QStringList remote{u"--remote"_s, u"a.png"_s};
    QTest::newRow("success") << remote << QByteArray();
    QTest::newRow("success as JSON") << remote + QStringList(u"--json"_s) << QByteArray();
    QTest::newRow("overwriting") << remote + QStringList(u"--overwrite"_s) << QByteArray();
    QTest::newRow("wrong usage") << QStringList({u"--remote"_s, u"--sideways"_s}) << QByteArray();
    QTest::newRow("help") << QStringList({u"--remote"_s, u"--help"_s}) << QByteArray();
    QTest::newRow("no picture") << QStringList({u"--remote"_s, u"no.png"_s, u"x.txt"_s})
                                << QByteArray();
    for (const int status : {200, 302, 400, 401, 413, 415, 429, 500}) {
        QTest::addRow("%d", status)
            << remote + QStringList(u"--json"_s) << toBytes({.status = status});
    }
    QTest::newRow("garbage") << remote << QByteArray("garbage\r\n\r\n");
    QTest::newRow("closes") << remote << QByteArray(" ");
    QTest::newRow("insecure redirect")
        << remote << toBytes({.status = 302, .headers = {{"Location", "http://example.com/"}}});
    QTest::newRow("insecure location")
        << remote << toBytes(shrinkAnswer(QUrl(u"http://example.com/x"_s)));
}

void RemoteTest::everythingWritten_isWithoutTheKey()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, answer);
    if (!answer.isEmpty()) {
        m_server->setRaw([&](QTcpSocket &socket, const QByteArray &) {
            if (socket.property("answered").toBool())
                return;
            socket.setProperty("answered", true);
            socket.write(answer);
            socket.disconnectFromHost();
        });
    }
    const Outcome outcome = run(arguments, m_server->url());
    QVERIFY(outcome.status >= 0);
    QVERIFY(!outcome.out.isEmpty() || !outcome.err.isEmpty());
    QVERIFY(!tellsTheKey(outcome.out));
    QVERIFY(!tellsTheKey(outcome.err));
    QVERIFY(m_seen.contains("pixpress-cli-at"));
    QVERIFY(!tellsTheKey(m_seen));
    QCOMPARE(filesThatTellTheKey(), QStringList(settingsPath()));
    QCOMPARE(QFile::permissions(settingsPath()) & QFile::Permissions(0x77), QFile::Permissions());
}

QTEST_GUILESS_MAIN(RemoteTest)
#include "tst_remote.moc"
