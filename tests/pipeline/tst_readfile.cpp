// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"

#include "pipeline/folder.h"
#include "support/child.h"
#include "support/faults/faults.h"

#include <QFileInfo>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

class ReadFileTest : public QObject, private FolderOfTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { makeFolder(); }
    void cleanup() { removeFolder(); }

    void readFile_givesTheWholeContent_data();
    void readFile_givesTheWholeContent();
    void readFile_followsLinks();
    void readFile_takesAnyName_data();
    void readFile_takesAnyName();
    void readFile_refusesWhatIsNoFile_data();
    void readFile_refusesWhatIsNoFile();
    void readFile_ofMissingFileFails_data();
    void readFile_ofMissingFileFails();
    void readFile_ofForbiddenFileFails();
    void readFile_ofPipePutInPlaceOfTheFileFails();
    void readFile_takesAllOfAGrowingFile();
    void readFile_ofAShrinkingFileFails();
    void readFile_ofMoreThanTheMemoryFails();
};

void ReadFileTest::readFile_givesTheWholeContent_data()
{
    QTest::addColumn<qsizetype>("size");
    for (const qsizetype size : {0, 1, 4095, 4096, 16385, 5'000'001})
        QTest::addRow("%d bytes", int(size)) << size;
}

void ReadFileTest::readFile_givesTheWholeContent()
{
    QFETCH(const qsizetype, size);
    put(u"a.png"_s, bytes(size));
    const auto read = readFile(url(u"a.png"_s));
    QCOMPARE(sentence(read), u"no error"_s);
    QVERIFY(*read == bytes(size));
    QVERIFY(content(u"a.png"_s) == bytes(size));
}

void ReadFileTest::readFile_followsLinks()
{
    put(u"a.png"_s, "content");
    QVERIFY(QFile::link(u"a.png"_s, path(u"b.png"_s)));
    QVERIFY(QFile::link(u"b.png"_s, path(u"c.png"_s)));
    QCOMPARE(readFile(url(u"c.png"_s)).value_or("none"), "content");
}

void ReadFileTest::readFile_takesAnyName_data()
{
    QTest::addColumn<QString>("name");
    for (const auto *name :
         {"a b.png", "100%25.png", "a#b?.png", "Größe 大きさ 🐈.png", "%1 %2.png", ".hidden.png",
          "a\nb.png", "a\\b.png", " a .png", "-a.png"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void ReadFileTest::readFile_takesAnyName()
{
    QFETCH(const QString, name);
    const QString missing = sentence(readFile(url(name)));
    QVERIFY2(missing.contains(name), qPrintable(missing));
    QCOMPARE(sentence(writeFile(url(name), "content")), u"no error"_s);
    QCOMPARE(names(), QStringList(name));
    QCOMPARE(readFile(url(name)).value_or("none"), "content");
}

void ReadFileTest::readFile_refusesWhatIsNoFile_data()
{
    addKindsOfNoFile();
}

void ReadFileTest::readFile_refusesWhatIsNoFile()
{
    QFETCH(const QString, kind);
    const QString path = makeNoFile(kind, u"x.png"_s);
    QVERIFY(!path.isEmpty());
    const auto result = inChild([&path] { // which may hang
        return sentence(readFile(QUrl::fromLocalFile(path)));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer,
             u"Could not read \"%1\": It is not a regular file."_s.arg(QFileInfo(path).fileName()));
}

void ReadFileTest::readFile_ofMissingFileFails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << u"gone.png"_s;
    QTest::newRow("missing folder") << u"none/gone.png"_s;
    QTest::newRow("below a file") << u"file/gone.png"_s;
    QTest::newRow("dangling link") << u"link-gone.png"_s;
    QTest::newRow("link to itself") << u"loop-gone.png"_s;
    QTest::newRow("file before a null character") << u"file"_s + QChar() + u"gone.png"_s;
    QTest::newRow("name too long") << QString(300, u'x') + u"gone.png"_s;
}

void ReadFileTest::readFile_ofMissingFileFails()
{
    QFETCH(const QString, name);
    put(u"file"_s);
    QVERIFY(QFile::link(u"none.png"_s, path(u"link-gone.png"_s)));
    QVERIFY(QFile::link(u"loop-gone.png"_s, path(u"loop-gone.png"_s)));
    const auto read = readFile(url(name));
    QVERIFY(!read);
    QVERIFY2(read.error().contains(QFileInfo(name).fileName()), qPrintable(read.error()));
}

void ReadFileTest::readFile_ofForbiddenFileFails()
{
    put(u"closed.png"_s, "secret");
    put(u"open.png"_s, "content");
    QVERIFY(QFile::setPermissions(path(u"open.png"_s), ownerOnly | QFile::ReadOther));
    QVERIFY(QFile::setPermissions(path(u"closed.png"_s), {}));
    openToOthers();
    const auto readByOthers = [this](const QString &name) {
        return inChild([file = url(name)] {
            if (!dropPrivileges())
                return u"still root"_s;
            const auto read = readFile(file);
            return read ? QString::fromUtf8(*read) : read.error();
        });
    };
    QCOMPARE(readByOthers(u"open.png"_s).answer, u"content"_s);
    QCOMPARE(readByOthers(u"closed.png"_s).answer,
             u"Could not read \"closed.png\": Permission denied."_s);
}

void ReadFileTest::readFile_ofPipePutInPlaceOfTheFileFails()
{
    put(u"a.png"_s, "content");
    const auto result = inChild([this] { // which may hang
        faults::observeOpening(
            [](const char *opened) {
                unlink(opened);
                mkfifo(opened, 0600);
            },
            qPrintable(m_folder->path()));
        return sentence(readFile(url(u"a.png"_s)));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer, u"Could not read \"a.png\": It is not a regular file."_s);
}

void ReadFileTest::readFile_takesAllOfAGrowingFile()
{
    put(u"a.png"_s, "start");
    static QByteArray g_path;
    static int g_rounds;
    g_path = path(u"a.png"_s).toUtf8();
    g_rounds = 10;
    faults::observe(
        [](faults::Call call, int) {
            // Through another name than that of the observed folder.
            if (call == faults::Call::read && g_rounds-- > 0) {
                const auto size = statusOf(QString::fromUtf8(g_path)).st_size;
                truncate(g_path.constData(), size + 3);
            }
        },
        qPrintable(m_folder->path()));
    const auto read = readFile(url(u"a.png"_s));
    faults::observe(nullptr);
    QCOMPARE(sentence(read), u"no error"_s);
    QVERIFY(g_rounds <= 0);
    QCOMPARE(*read, content(u"a.png"_s));
    QCOMPARE(read->size(), 35);
}

void ReadFileTest::readFile_ofAShrinkingFileFails()
{
    put(u"a.png"_s, bytes(5000));
    static QByteArray g_path;
    g_path = path(u"a.png"_s).toUtf8();
    faults::observe(
        [](faults::Call call, int) {
            if (call ==
                faults::Call::read) // Through another name than that of the observed folder.
                truncate(g_path.constData(), 4999);
        },
        qPrintable(m_folder->path()));
    const auto read = readFile(url(u"a.png"_s));
    faults::observe(nullptr);
    QCOMPARE(content(u"a.png"_s).size(), 4999);
    QCOMPARE(sentence(read), u"Could not read \"a.png\": It became smaller while it was read."_s);
}

void ReadFileTest::readFile_ofMoreThanTheMemoryFails()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("Sanitizers end a program that asks for too much memory.");
#endif
    put(u"a.png"_s);
    if (truncate(qPrintable(path(u"a.png"_s)), off_t(1) << 42) != 0)
        QSKIP("The file system has no files of 4 TB.");
    const auto result = inChild([this] {
        const rlimit limit{rlim_t(1) << 41, rlim_t(1) << 41};
        setrlimit(RLIMIT_AS, &limit);
        return sentence(readFile(url(u"a.png"_s)));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer, u"Could not read \"a.png\": %1."_s.arg(qt_error_string(ENOMEM)));
}

QTEST_GUILESS_MAIN(ReadFileTest)
#include "tst_readfile.moc"
