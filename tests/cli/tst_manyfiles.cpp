// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

#include <csignal>
#include <unistd.h>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// Files that are named in lists and by their folders.
class ManyFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_program = std::make_unique<Program>(); }

    void list_namesFiles()
    {
        for (const auto &name : {u"a.png"_s, u"b c.png"_s, u"line\nbreak.png"_s})
            m_program->copySample(u"island map.png"_s, name);
        write(u"list"_s, QByteArray("a.png\0b c.png\0line\nbreak.png\0", 28));
        const Outcome outcome = m_program->run({u"--files0-from"_s, u"list"_s});
        QVERIFY2(outcome.status == 0, outcome.err);
        QVERIFY2(outcome.out.contains("\n3 files compressed, "), outcome.out);
        QVERIFY(m_program->files().contains(u"line\nbreak-pixpress.png"_s));
    }

    void list_comesFromStandardInput()
    {
        m_program->copySample(u"island map.png"_s, u"a.png"_s);
        QProcess process;
        m_program->prepare(process);
        process.start(Program::file(), {u"--files0-from"_s, u"-"_s});
        process.write(QByteArray("a.png")); // the last name needs no end
        process.closeWriteChannel();
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        QVERIFY(m_program->files().contains(u"a-pixpress.png"_s));
    }

    void emptyList_isNothingToCompress()
    {
        write(u"list"_s, {});
        const Outcome outcome = m_program->run({u"--files0-from"_s, u"list"_s});
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.out, "Nothing to compress.\n");
    }

    void missingList_isNamed()
    {
        const Outcome outcome = m_program->run({u"--files0-from"_s, u"list"_s});
        QCOMPARE(outcome.status, 2);
        QCOMPARE(outcome.err,
                 "pixpress-cli: Could not read \"list\": No such file or directory.\n");
    }

    void folder_isMirrored()
    {
        makeTree();
        QVERIFY(QDir(m_program->path({})).mkdir(u"small"_s));
        const Outcome outcome =
            m_program->run({u"--recursive"_s, u"in"_s, u"--output"_s, u"small"_s});
        QVERIFY2(outcome.status == 0, outcome.err);
        QCOMPARE(tree(u"small"_s), (QStringList{u"a.png"_s, u"sub/a.png"_s, u"sub/deep/b.jpg"_s}));
    }

    void outputInsideTheFolder_isNotCompressedAgain()
    {
        makeTree();
        QVERIFY(QDir(m_program->path({})).mkdir(u"in/small"_s));
        for (int round = 0; round < 2; ++round)
            QCOMPARE(m_program
                         ->run({u"--recursive"_s, u"in"_s, u"--output"_s, u"in/small"_s,
                                u"--resize"_s, u"fit"_s, u"--width"_s, u"50"_s})
                         .status,
                     0);
        // Twice the three, once each.
        QCOMPARE(tree(u"in/small"_s),
                 (QStringList{u"a-1.png"_s, u"a.png"_s, u"sub/a-1.png"_s, u"sub/a.png"_s,
                              u"sub/deep/b-1.jpg"_s, u"sub/deep/b.jpg"_s}));
    }

    void whatPixpressWrote_isNotCompressedAgain()
    {
        makeTree();
        QCOMPARE(m_program->run({u"--recursive"_s, u"in"_s}).status, 0);
        const QByteArrayList lines =
            m_program->run({u"--recursive"_s, u"in"_s, u"--json"_s}).out.trimmed().split('\n');
        QCOMPARE(lines.size(), 3);
        for (const QByteArray &line : lines) {
            const QString file = QJsonDocument::fromJson(line).object().value(u"file"_s).toString();
            QVERIFY2(!file.contains(u"-pixpress"_s), qPrintable(file));
        }
        QCOMPARE(tree(u"in"_s).size(), 3 + 2 * 3 + 2); // and the hidden one and the link
    }

    void folderThatIsNone_isRefused()
    {
        const Outcome outcome = m_program->run({u"--recursive"_s, u"in"_s});
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.err.startsWith(
            "pixpress-cli: --recursive takes a folder that exists, not \"in\".\n"));
    }

    void unreadableFolder_isReported()
    {
        if (geteuid() == 0)
            QSKIP("Root may read every folder.");
        makeTree();
        QFile deep(m_program->path(u"in/sub/deep"_s));
        QVERIFY(deep.setPermissions({}));
        const Outcome outcome = m_program->run({u"--recursive"_s, u"in"_s});
        QVERIFY(deep.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.err, "in/sub/deep  Skipped: The folder cannot be read\n");
        QVERIFY(outcome.out.contains("2 files compressed"));
    }

    void nameThatIsNotUtf8_isSaid_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("list") << QStringList{u"--files0-from"_s, u"list"_s};
        QTest::newRow("folder") << QStringList{u"--recursive"_s, u"."_s};
    }

    void nameThatIsNotUtf8_isSaid()
    {
        QFETCH(QStringList, arguments);
        m_program->copySample(u"island map.png"_s, u"good.png"_s);
        const QByteArray folder = QFile::encodeName(m_program->path({}));
        QCOMPARE(::link((folder + "/good.png").constData(), (folder + "/bad\xff.png").constData()),
                 0);
        write(u"list"_s, QByteArray("good.png\0bad\xff.png\0", 19));
        const Outcome outcome = m_program->run(arguments);
        QCOMPARE(outcome.status, 1);
        QVERIFY2(outcome.out.contains("Its name, or that of a folder, is not valid UTF-8 text."),
                 outcome.out);
        QVERIFY2(outcome.out.contains("1 file compressed"), outcome.out);
    }

    void jobs_areAtLeastOne_data()
    {
        QTest::addColumn<QString>("jobs");
        for (const char *jobs : {"0", "-1", "65", "two", "1.5", ""})
            QTest::newRow(jobs) << QString::fromLatin1(jobs);
    }

    void jobs_areAtLeastOne()
    {
        QFETCH(QString, jobs);
        const Outcome outcome = m_program->run({u"--jobs"_s, jobs, u"a.png"_s});
        QCOMPARE(outcome.status, 2);
        QVERIFY2(outcome.err.startsWith("pixpress-cli: --jobs takes a number from 1 to 64, not \"" +
                                        jobs.toUtf8() + "\".\n"),
                 outcome.err);
    }

    /// As README shows it, with slots of this computer; stopped half-way and continued.
    void gnuParallel_compressesNothingTwice()
    {
        if (QStandardPaths::findExecutable(u"parallel"_s).isEmpty())
            QSKIP("GNU parallel is not installed.");
        QStringList expected;
        QByteArray list;
        for (int index = 0; index < 40; ++index) {
            const QString name = u"%1.png"_s.arg(index, 2, 10, QChar(u'0'));
            m_program->copySample(u"island map.png"_s, name);
            list += name.toUtf8() + '\0';
            expected += {name, name.chopped(4) + u"-pixpress.png"_s};
        }
        write(u"list"_s, list);
        const auto finished = [&] { return m_program->files().filter(u"-pixpress"_s).size(); };
        QProcess first;
        start(first);
        QTRY_VERIFY_WITH_TIMEOUT(finished() >= 8, 120'000);
        ::kill(static_cast<pid_t>(first.processId()), SIGHUP); // ends when the running jobs have
        QVERIFY(first.waitForFinished(120'000));
        const qsizetype half = finished();
        QVERIFY2(half < 40, qPrintable(QString::number(half)));

        QProcess second;
        start(second);
        QVERIFY(second.waitForFinished(240'000));
        QVERIFY2(second.exitCode() == 0, second.readAllStandardError());
        expected += {u"list"_s, u"log"_s};
        expected.sort();
        QCOMPARE(m_program->files(), expected);
    }

private:
    void start(QProcess &process) const
    {
        m_program->prepare(process);
        process.start(u"parallel"_s,
                      {u"--will-cite"_s, u"-0"_s, u"-a"_s, u"list"_s, u"-n"_s, u"4"_s, u"-j"_s,
                       u"2"_s, u"--joblog"_s, u"log"_s, u"--resume"_s, Program::file(), u"--jobs"_s,
                       u"1"_s, u"--resize"_s, u"fit"_s, u"--width"_s, u"300"_s});
        QVERIFY(process.waitForStarted());
    }

    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(m_program->path(name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    }

    /// Three pictures on three levels; besides them what is left out.
    void makeTree() const
    {
        QVERIFY(QDir(m_program->path({})).mkpath(u"in/sub/deep"_s));
        m_program->copySample(u"island map.png"_s, u"in/a.png"_s);
        m_program->copySample(u"island map.png"_s, u"in/sub/a.png"_s);
        m_program->copySample(u"lake at dusk.jpg"_s, u"in/sub/deep/b.jpg"_s);
        m_program->copySample(u"island map.png"_s, u"in/.hidden.png"_s);
        write(u"in/notes.txt"_s, "x");
        QVERIFY(QFile::link(u"a.png"_s, m_program->path(u"in/link.png"_s)));
        QVERIFY(QFile::link(u".."_s, m_program->path(u"in/sub/loop"_s)));
    }

    /// The pictures below a folder, with their ways there.
    QStringList tree(const QString &folder) const
    {
        const QDir root(m_program->path(folder));
        QStringList files;
        QDirIterator entries(root.path(), {u"*.png"_s, u"*.jpg"_s}, QDir::Files | QDir::Hidden,
                             QDirIterator::Subdirectories);
        while (entries.hasNext())
            files.append(root.relativeFilePath(entries.next()));
        files.sort();
        return files;
    }

    std::unique_ptr<Program> m_program;
};

QTEST_GUILESS_MAIN(ManyFilesTest)
#include "tst_manyfiles.moc"
