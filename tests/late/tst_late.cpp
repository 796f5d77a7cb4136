// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "late/builtinservice.h"
#include "pictures/thumbnail.h"
#include "service/tinifyservice.h"

#include <QFile>
#include <QProcess>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace pixpress;
using namespace Qt::StringLiterals;

namespace {

const std::atomic_bool running = false;
const QString key = u"the key"_s;

bool isLoaded(const QByteArray &library)
{
    QFile maps(u"/proc/self/maps"_s);
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

QByteArray sample()
{
    QFile file(QStringLiteral(PIXPRESS_SAMPLES "/paper balloon.png"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Thumbnail thumbnailOfSample()
{
    QFile file(QStringLiteral(PIXPRESS_SAMPLES "/paper balloon.png"));
    return file.open(QIODevice::ReadOnly) ? makeThumbnail(file.handle(), 72, running) : Thumbnail();
}

/// The service of this program, and a client of it.
class Service
{
public:
    bool isStarted() const { return m_isStarted; }
    QUrl url() const { return m_service.baseURL(); }
    auto shrink(const QString &shownKey)
    {
        return QCoro::waitFor(m_client.shrink(sample(), shownKey));
    }
    auto fetch(const QUrl &output)
    {
        return QCoro::waitFor(m_client.fetchOutput(output, std::nullopt, key));
    }

private:
    BuiltInService m_service{[] { return key.toUtf8(); }};
    const bool m_isStarted = m_service.start().has_value();
    TinifyService m_client{ServiceConfig::builtIn(m_service.baseURL())};
};

/// Makes a copy of this program, in a place where the module is not, ask and end.
const QString askOnly = u"--ask-only"_s;

/// Prints what is answered, in a line each.
void ask()
{
    Service service;
    const auto description = service.shrink(key);
    std::printf("%d\n%s\n", thumbnailOfSample().width,
                description ? "no error" : qUtf8Printable(errorDescription(description.error())));
}

} // namespace

/// What loads the module when something is asked of it.
class LateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void libraries_areNotLoadedBeforeTheyAreNeeded()
    {
        if (!QFile::exists(u"/proc/self/maps"_s))
            QSKIP("This system does not tell what is loaded.");
        Service service;
        QVERIFY(service.isStarted());
        for (const char *library : {"libvips", "libcurl", "libcpp-httplib", "libcrypto"})
            QVERIFY2(!isLoaded(library), library);
        QVERIFY(service.shrink(key));
        for (const char *library : {"libvips", "libcurl", "libcpp-httplib"})
            QVERIFY2(isLoaded(library), library);
    }

    void thumbnail_isMade()
    {
        const Thumbnail thumbnail = thumbnailOfSample();
        QCOMPARE(thumbnail.width, 72);
        QCOMPARE(thumbnail.rgba.size(), 4 * thumbnail.width * thumbnail.height);
    }

    void service_answersWhoHasTheKey()
    {
        Service service;
        const auto refused = service.shrink(u"another"_s);
        QVERIFY(!refused);
        QCOMPARE(refused.error(), ServiceError(TinifyError{TinifyError::Case::unauthorized}));

        const auto shrunk = service.shrink(key);
        QVERIFY(shrunk);
        const auto output = service.fetch(shrunk->outputURL);
        QVERIFY(output);
        QCOMPARE(output->first.size(), shrunk->outputSize);
        QVERIFY(output->first.size() < sample().size());
    }

    void service_answersWhoCameBeforeItWasLoaded()
    {
        Service service;
        QTcpSocket first;
        first.connectToHost(service.url().host(), static_cast<quint16>(service.url().port()));
        first.write("GET /output/x HTTP/1.1\r\nHost: " + service.url().authority().toUtf8() +
                    "\r\n\r\n");
        QTRY_VERIFY(first.canReadLine());
        QCOMPARE(first.readLine(), "HTTP/1.1 401 Unauthorized\r\n");
    }

    void service_endsThoughNobodyCame()
    {
        QUrl url;
        {
            const Service service;
            QVERIFY(service.isStarted());
            url = service.url();
        }
        QTcpSocket socket;
        socket.connectToHost(url.host(), static_cast<quint16>(url.port()));
        QVERIFY(!socket.waitForConnected());
        QCOMPARE(socket.error(), QAbstractSocket::ConnectionRefusedError);
    }

    void aMissingModule_isToldInASentence()
    {
        const QTemporaryDir folder;
        const QString copy = folder.filePath(u"tst"_s);
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), copy));
        QProcess process;
        process.start(copy, {askOnly});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        const QByteArrayList answers = process.readAllStandardOutput().split('\n');
        const QByteArray sentence = "A part of Pixpress cannot be loaded: ";
        QCOMPARE(answers.size(), 3);
        QCOMPARE(answers[0], "0");
        QVERIFY2(answers[1].startsWith(sentence) && answers[1].size() > sentence.size(),
                 answers[1]);
        QCOMPARE(answers[2], "");
    }
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(askOnly)) {
        ask();
        return 0;
    }
    LateTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_late.moc"
