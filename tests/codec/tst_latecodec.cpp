// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pictures/codec.h"
#include "pictures/thumbnail.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

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

/// Makes a copy of this program, in a place where the module is not, ask and end.
const QString askOnly = u"--ask-only"_s;

/// Prints what each function answers, in a line each.
void ask()
{
    QFile file(sample());
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const auto messageOf = [](const auto &result) {
        return result ? QByteArray("no error") : result.error().message.toUtf8();
    };
    std::printf("%s\n%s\n%d\n", messageOf(inspect("a", 100)).constData(),
                messageOf(compress("a", {}, 100, running)).constData(),
                isOpen ? makeThumbnail(file.handle(), 72, running).width : -1);
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
        const QByteArray sentence =
            "The part of Pixpress that compresses images cannot be loaded: ";
        QCOMPARE(answers.size(), 4);
        QVERIFY2(answers[0].startsWith(sentence) && answers[0].size() > sentence.size(),
                 answers[0]);
        QCOMPARE(answers[1], answers[0]);
        QCOMPARE(answers[2], "0");
        QCOMPARE(answers[3], "");
    }
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().contains(askOnly)) {
        ask();
        return 0;
    }
    LateCodecTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_latecodec.moc"
