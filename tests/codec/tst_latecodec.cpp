// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pictures/codec.h"
#include "pictures/thumbnail.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

namespace {

const std::atomic_bool running = false;

bool isLoaded(const QByteArray &library)
{
    QFile maps(u"/proc/self/maps"_s);
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

QString sample()
{
    return QStringLiteral(PIXPRESS_SAMPLES "/paper balloon.png");
}

} // namespace

/// The functions that load the module when they are called.
class LateCodecTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void libvips_isNotLoadedBeforeItIsNeeded()
    {
        if (!QFile::exists(u"/proc/self/maps"_s))
            QSKIP("This system does not tell what is loaded.");
        QVERIFY(!isLoaded("libvips"));
        QVERIFY(!inspect("no picture", 100));
        QVERIFY(isLoaded("libvips"));
    }

    void everyFunction_answersAsTheCodecDoes()
    {
        QFile file(sample());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray picture = file.readAll();

        const auto info = inspect(picture, 10'000'000);
        QVERIFY(info);
        QCOMPARE(info->frame.width, 1200);
        const auto smaller = compress(picture, {}, 10'000'000, running);
        QVERIFY(smaller);
        QVERIFY(!smaller->bytes.isEmpty() && smaller->bytes.size() < picture.size());
        QVERIFY(file.seek(0));
        const Thumbnail thumbnail = makeThumbnail(file.handle(), 72, running);
        QCOMPARE(thumbnail.width, 72);
        QCOMPARE(thumbnail.rgba.size(), 4 * thumbnail.width * thumbnail.height);

        const auto error = inspect("no picture", 100);
        QCOMPARE(error.error().fault, CodecFault::unsupported);
    }

    /// Run by the test below, in a place where the module is not.
    void withoutTheModule_aSentenceSaysSo()
    {
        if (!qEnvironmentVariableIsSet("PIXPRESS_TEST_WITHOUT_MODULE"))
            QSKIP("This needs a place of its own.");
        const QString expected =
            u"The part of Pixpress that compresses images cannot be loaded: "_s;
        const auto info = inspect("a", 100);
        QCOMPARE(info.error().fault, CodecFault::failed);
        QVERIFY2(info.error().message.startsWith(expected), qPrintable(info.error().message));
        const auto compressed = compress("a", {}, 100, running);
        QCOMPARE(compressed.error().fault, CodecFault::failed);
        QVERIFY(compressed.error().message.size() > expected.size());
        QFile file(sample());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(makeThumbnail(file.handle(), 72, running).width, 0);
    }

    void aMissingModule_harmsNothing()
    {
        const QTemporaryDir folder;
        const QString copy = folder.filePath(u"tst"_s);
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), copy));
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"PIXPRESS_TEST_WITHOUT_MODULE"_s, u"1"_s);
        process.setProcessEnvironment(environment);
        process.start(copy, {u"withoutTheModule_aSentenceSaysSo"_s});
        QVERIFY(process.waitForFinished());
        const QByteArray output = process.readAll();
        QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0, output);
        QVERIFY2(output.contains("3 passed, 0 failed, 0 skipped"), output);
    }
};

QTEST_GUILESS_MAIN(LateCodecTest)
#include "tst_latecodec.moc"
