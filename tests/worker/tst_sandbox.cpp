// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/worker.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

class SandboxTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everythingThatDecodingDoesNotNeed_isRefused()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath(u"file"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("content") == 7);
        file.close();

        QProcess probe;
        probe.start(QStringLiteral(PIXPRESS_SANDBOX_PROBE), {folder.path()});
        QVERIFY(probe.waitForFinished());
        QCOMPARE(probe.exitStatus(), QProcess::NormalExit);
        QStringList lines =
            QString::fromUtf8(probe.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        // That the report can say something else.
        QCOMPARE(lines.takeFirst(), u"need nothing: possible"_s);
        QCOMPARE(lines.size(), 2 * 26);
        for (const QString &line : lines)
            QVERIFY2(line.endsWith(u": Operation not permitted"_s), qPrintable(line));

        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "content");
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{u"file"_s});
    }

    void worker_hasNoPrivilegesAndAFilter()
    {
        Worker worker;
        bool isAnswered = false;
        worker.compress("no picture", {}, [&](const auto &) { isAnswered = true; });
        QTRY_VERIFY(isAnswered);
        const QByteArray status = statusOfChild();
        QVERIFY2(status.contains("\nNoNewPrivs:\t1\n"), status.constData());
        QVERIFY2(status.contains("\nSeccomp:\t2\n"), status.constData());
    }

    void worker_hasOneThreadWhenItIsIdle()
    {
        Worker worker;
        worker.start();
        QTRY_VERIFY(statusOfChild().contains("\nSeccomp:\t2\n"));
        QVERIFY(statusOfChild().contains("\nThreads:\t1\n"));
    }

private:
    /// What the system says of the only process that this one has started.
    static QByteArray statusOfChild()
    {
        QFile children(u"/proc/self/task/%1/children"_s.arg(QCoreApplication::applicationPid()));
        if (!children.open(QIODevice::ReadOnly))
            return {};
        QFile status(u"/proc/%1/status"_s.arg(QString::fromLatin1(children.readAll()).trimmed()));
        return status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    }
};

QTEST_GUILESS_MAIN(SandboxTest)
#include "tst_sandbox.moc"
