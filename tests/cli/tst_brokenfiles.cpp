// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "brokenpictures.h"
#include "pictures.h"

#include "cli/program.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace pixpress::testing;
using namespace Qt::StringLiterals;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isMemoryOurs = false; // but the sanitizer's too
#else
constexpr bool isMemoryOurs = true;
#endif

/// The whole program with a folder full of broken files: each ends as a row, and none stops the
/// others.
class BrokenFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void files_endAsARowEach_data();
    void files_endAsARowEach();

private:
    void put(const QString &name, const QByteArray &content);
    void putPictures(const QString &kind);
    void putOddFiles();
    QList<QJsonObject> runAll();

    std::unique_ptr<Program> m_program;
    QMap<QString, QByteArray> m_files; ///< Content by name; nothing of what is no file.
};

void BrokenFilesTest::initTestCase()
{
    VIPS_INIT("test");
    g_log_set_handler(
        "VIPS", G_LOG_LEVEL_WARNING, [](const char *, GLogLevelFlags, const char *, void *) {},
        nullptr);
}

void BrokenFilesTest::files_endAsARowEach_data()
{
    QTest::addColumn<QString>("kind");
    for (const auto *kind :
         {"truncated", "flipped bits", "wrong lengths", "lying dimensions", "bombs", "odd files"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void BrokenFilesTest::files_endAsARowEach()
{
    QFETCH(const QString, kind);
    m_program = std::make_unique<Program>();
    m_files.clear();
    QVERIFY(QDir().mkdir(m_program->path(u"out"_s)));
    if (kind == u"odd files")
        putOddFiles();
    else
        putPictures(kind);
    put(u"zz good.png"_s, saved(photo(60, 40), ImageFormat::png));

    QSet<QString> ended;
    int completed = 0;
    for (const QJsonObject &row : runAll()) {
        const QString name = QFileInfo(row[u"file"_s].toString()).fileName();
        QVERIFY2(!ended.contains(name), qPrintable(name));
        ended.insert(name);
        if (row[u"status"_s] == u"completed"_s) {
            ++completed;
            const QString output = row[u"output"_s].toString();
            try {
                vips::VImage::new_from_file(qPrintable(output),
                                            vips::VImage::option()->set("fail_on", "error"))
                    .copy_memory();
            } catch (const vips::VError &error) {
                QFAIL(qPrintable(name + u": "_s + QLatin1StringView(error.what())));
            }
            continue;
        }
        const QString error = row[u"error"_s].toString();
        QVERIFY2(error.size() > 15, qPrintable(name + u": "_s + error));
        QVERIFY2(error.contains(u' '), qPrintable(name + u": "_s + error));
    }
    const QStringList names = m_files.keys();
    QCOMPARE(ended, QSet<QString>(names.begin(), names.end()));
    QVERIFY(QFile::exists(m_program->path(u"out/zz good.png"_s)));
    QCOMPARE(QDir(m_program->path(u"out"_s))
                 .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System)
                 .size(),
             completed);
    for (const QString &name : names) {
        if (!m_files[name].isNull())
            QVERIFY2(m_program->content(name) == m_files[name], qPrintable(name));
    }

    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    qInfo("%d files, %d compressed; %ld MB at most so far.", int(names.size()), completed,
          usage.ru_maxrss / 1024);
    if (isMemoryOurs)
        QVERIFY(usage.ru_maxrss < 2048 * 1024);
}

void BrokenFilesTest::put(const QString &name, const QByteArray &content)
{
    QFile file(m_program->path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
    m_files[name] = content;
}

void BrokenFilesTest::putPictures(const QString &kind)
{
    if (kind == u"bombs") {
        for (const BrokenPicture &bomb : bombs())
            put(QString::fromLatin1(bomb.name) + u".png"_s, bomb.bytes);
        return;
    }
    for (const ImageFormat format : allCases<ImageFormat>()) {
        const BrokenPictures pictures = kind == u"truncated"       ? truncated(format)
                                        : kind == u"flipped bits"  ? withFlippedBits(format)
                                        : kind == u"wrong lengths" ? withWrongLengths(format)
                                                                   : withLyingDimensions(format);
        for (qsizetype i = 0; i < pictures.size(); ++i)
            put(u"%1 %2.%3"_s.arg(i, 3, 10, QLatin1Char('0'))
                    .arg(QString::fromLatin1(pictures[i].name), fileExtension(format)),
                pictures[i].bytes);
    }
}

void BrokenFilesTest::putOddFiles()
{
    put(u"empty.png"_s, "");
    put(u"text.webp"_s, "no picture at all\n");
    for (const ImageFormat content : allCases<ImageFormat>()) {
        for (const ImageFormat named : allCases<ImageFormat>())
            put(fileExtension(content) + u" named."_s + fileExtension(named),
                wholePicture(content));
    }
    const QString out = m_program->path(u"%1"_s);
    QVERIFY(QDir().mkdir(out.arg(u"folder.png"_s)));
    QCOMPARE(mkfifo(qPrintable(out.arg(u"pipe.png"_s)), 0600), 0);
    QVERIFY(QFile::link(u"/dev/zero"_s, out.arg(u"zero.png"_s)));
    QVERIFY(QFile::link(u"/dev/null"_s, out.arg(u"null.jpg"_s)));
    QVERIFY(QFile::link(u"/dev/tty"_s, out.arg(u"terminal.jpg"_s)));
    QVERIFY(QFile::link(u"nowhere.png"_s, out.arg(u"dangling.png"_s)));
    QVERIFY(QFile::link(u"loop.png"_s, out.arg(u"loop.png"_s)));
    QVERIFY(QFile::link(u"/proc/self/mem"_s, out.arg(u"memory.png"_s)));
    for (const auto *name : {"folder.png", "pipe.png", "zero.png", "null.jpg", "terminal.jpg",
                             "dangling.png", "loop.png", "memory.png", "missing.avif"})
        m_files[QString::fromLatin1(name)] = {};
}

QList<QJsonObject> BrokenFilesTest::runAll()
{
    QProcess process;
    m_program->prepare(process);
    process.start(Program::file(), QStringList{u"--json"_s, u"--output"_s, u"out"_s, u"--"_s} +
                                       QStringList(m_files.keys()));
    if (!process.waitForFinished(280'000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() > 1)
        qWarning("The program has not come to its end.");
    QList<QJsonObject> rows;
    for (const QByteArray &line : process.readAllStandardOutput().split('\n')) {
        const QJsonObject row = QJsonDocument::fromJson(line).object();
        if (row.contains(u"file"_s))
            rows.append(row);
    }
    return rows;
}

QTEST_GUILESS_MAIN(BrokenFilesTest)
#include "tst_brokenfiles.moc"
