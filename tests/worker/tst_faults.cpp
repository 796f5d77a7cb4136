// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queue.h"
#include "worker/localservice.h"
#include "worker/worker.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

using namespace pixpress;
using namespace Qt::StringLiterals;

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The processes that this one has started.
QByteArrayList startedProcesses()
{
    const QByteArray ids =
        contents(u"/proc/self/task/%1/children"_s.arg(QCoreApplication::applicationPid()));
    return ids.simplified().isEmpty() ? QByteArrayList() : ids.simplified().split(' ');
}

qsizetype openDescriptors()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
}

/// The same picture, 200 pixels wide.
QByteArray shrunk(const QByteArray &picture)
{
    Worker worker;
    QByteArray result;
    worker.compress(picture, {.resizeEnabled = true, .resizeWidth = 200, .resizeHeight = {}},
                    [&](const auto &compressed) { result = compressed->bytes; });
    if (!QTest::qWaitFor([&] { return !result.isEmpty(); }, 60'000))
        qFatal("There is no answer.");
    return result;
}

} // namespace

/// Signals that end or stop the worker while it overwrites pictures and makes thumbnails.
class FaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signalAtAnyMoment_costsNoPicture()
    {
        QTemporaryDir folder;
        QByteArrayList originals; // small, so that many rounds take little time
        for (const QString &name :
             {u"island map.png"_s, u"lake at dusk.jpg"_s, u"marbled ink.webp"_s})
            originals.append(shrunk(contents(QStringLiteral(PIXPRESS_SAMPLES "/") + name)));
        const QStringList names{folder.filePath(u"a.png"_s), folder.filePath(u"b.jpg"_s),
                                folder.filePath(u"c.webp"_s)};
        QRandomGenerator random(1);
        const qsizetype descriptors = openDescriptors();
        int completed = 0;
        int failed = 0;
        int thumbnails = 0;
        {
            Worker worker({.compressLimit = std::chrono::seconds(1),
                           .thumbnailLimit = std::chrono::seconds(1)});
            TransientSettings settings;
            CompressionQueue queue(settings, std::make_unique<LocalService>(worker));
            const int rounds = qEnvironmentVariableIsSet("PIXPRESS_LONG") ? 1000 : 200;
            for (int round = 0; round < rounds; ++round) {
                for (qsizetype index = 0; index < names.size(); ++index) {
                    QFile file(names[index]);
                    QVERIFY(file.open(QIODevice::WriteOnly));
                    QCOMPARE(file.write(originals[index]), originals[index].size());
                    file.close();
                    queue.addFiles({QUrl::fromLocalFile(names[index])},
                                   {.outputDestination = OutputDestination::overwrite});
                }
                QFile picture(names[round % 3]);
                QVERIFY(picture.open(QIODevice::ReadOnly));
                bool hasThumbnail = false;
                worker.makeThumbnail(picture.handle(), 72, [&](const auto &thumbnail) {
                    hasThumbnail = true;
                    thumbnails += thumbnail.has_value();
                });

                // A worker that hangs costs the time of a request: fewer of those.
                const int signal = round % 20 == 0 ? SIGSTOP : round % 2 == 0 ? SIGKILL : SIGSEGV;
                QTest::qWait(random.bounded(60)); // the moment is what is random here
                for (const QByteArray &child : startedProcesses())
                    ::kill(child.toInt(), signal);

                QTRY_COMPARE_WITH_TIMEOUT(queue.activeTasks(), 0, 60'000);
                QTRY_VERIFY(hasThumbnail);
                for (qsizetype index = 0; index < names.size(); ++index) {
                    const QByteArray now = contents(names[index]);
                    const TaskStatus &status = queue.tasks()[index].status;
                    if (const auto *done = std::get_if<status::Completed>(&status)) {
                        ++completed;
                        QCOMPARE(now.size(), done->result.compressedSize);
                        QCOMPARE(now.first(3), originals[index].first(3)); // the format's
                    } else {
                        ++failed;
                        QVERIFY(std::holds_alternative<status::Failed>(status));
                        const QString reason = std::get<status::Failed>(status).error;
                        QVERIFY2(reason.endsWith(u'.'), qPrintable(reason));
                        QCOMPARE(now, originals[index]);
                    }
                }
                queue.clearAll();
            }
            qInfo("%d completed, %d failed, %d thumbnails.", completed, failed, thumbnails);
            QVERIFY(completed > rounds);
            QVERIFY(thumbnails > rounds / 2);
            QVERIFY(startedProcesses().size() <= 1);
        }
        QVERIFY(startedProcesses().isEmpty());
        QCOMPARE(openDescriptors(), descriptors);
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 3);
    }
};

QTEST_GUILESS_MAIN(FaultsTest)
#include "tst_faults.moc"
