// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"

#include "pipeline/folder.h"
#include "support/child.h"
#include "support/faults/faults.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

class WriteFileTest : public QObject, private FolderOfTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { makeFolder(); }
    void cleanup() { removeFolder(); }

    void writeFile_makesANewFile_data();
    void writeFile_makesANewFile();
    void writeFile_leavesNewFileToTheUmask();
    void writeFile_replacesTheContent_data();
    void writeFile_replacesTheContent();
    void writeFile_keepsInodeOwnerAndPermissions();
    void writeFile_keepsHardLinks();
    void writeFile_keepsSymbolicLinks();
    void writeFile_throughDanglingLinkMakesItsFile_data();
    void writeFile_throughDanglingLinkMakesItsFile();
    void writeFile_isSeenByOpenHandles();
    void writeFile_inClosedFolderReplacesAnOpenFile();
    void writeFile_toWhatIsNoFileFails_data();
    void writeFile_toWhatIsNoFileFails();
    void writeFile_doesNotEvenOpenWhatIsNoFile();
    void writeFile_overFolderPutInPlaceOfTheFileFails();
    void writeFile_withoutFolderFails_data();
    void writeFile_withoutFolderFails();
    void writeFile_toForbiddenFileKeepsIt_data();
    void writeFile_toForbiddenFileKeepsIt();
};

void WriteFileTest::writeFile_makesANewFile_data()
{
    QTest::addColumn<qsizetype>("size");
    for (const qsizetype size : {0, 1, 4096, 3'000'001})
        QTest::addRow("%d bytes", int(size)) << size;
}

void WriteFileTest::writeFile_makesANewFile()
{
    QFETCH(const qsizetype, size);
    QCOMPARE(sentence(writeFile(url(u"a.png"_s), bytes(size))), u"no error"_s);
    QVERIFY(content(u"a.png"_s) == bytes(size));
    QCOMPARE(names(), QStringList(u"a.png"_s));
}

void WriteFileTest::writeFile_leavesNewFileToTheUmask()
{
    const mode_t before = umask(027);
    const auto written = writeFile(url(u"a.png"_s), "content");
    umask(before);
    QVERIFY(written);
    QCOMPARE(statusOf(path(u"a.png"_s)).st_mode & 07777, 0640U);
}

void WriteFileTest::writeFile_replacesTheContent_data()
{
    QTest::addColumn<qsizetype>("before");
    QTest::addColumn<qsizetype>("after");
    const auto row = [](const char *name, qsizetype before, qsizetype after) {
        QTest::newRow(name) << before << after;
    };
    row("shrinking", 2'000'001, 1'000'003);
    row("growing", 1'000'003, 2'000'001);
    row("same size", 70'000, 70'000);
    row("from nothing", 0, 5000);
    row("to nothing", 5000, 0);
    row("nothing to nothing", 0, 0);
    row("by one byte", 4096, 4097);
}

void WriteFileTest::writeFile_replacesTheContent()
{
    QFETCH(const qsizetype, before);
    QFETCH(const qsizetype, after);
    put(u"a.png"_s, bytes(before, 1));
    QCOMPARE(sentence(writeFile(url(u"a.png"_s), bytes(after, 2))), u"no error"_s);
    QVERIFY(content(u"a.png"_s) == bytes(after, 2));
    QCOMPARE(names(), QStringList(u"a.png"_s));
}

void WriteFileTest::writeFile_keepsInodeOwnerAndPermissions()
{
    put(u"a.png"_s, "old");
    const QByteArray name = QFile::encodeName(path(u"a.png"_s));
    if (geteuid() == 0)
        QCOMPARE(chown(name.constData(), 1234, 4321), 0);
    QCOMPARE(chmod(name.constData(), 0604), 0);
    const struct stat before = statusOf(path(u"a.png"_s));
    QVERIFY(writeFile(url(u"a.png"_s), "new content"));
    const struct stat after = statusOf(path(u"a.png"_s));
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(after.st_mode, before.st_mode);
    QCOMPARE(after.st_uid, before.st_uid);
    QCOMPARE(after.st_gid, before.st_gid);
    QCOMPARE(content(u"a.png"_s), "new content");
}

void WriteFileTest::writeFile_keepsHardLinks()
{
    put(u"a.png"_s, "old");
    QCOMPARE(link(qPrintable(path(u"a.png"_s)), qPrintable(path(u"b.png"_s))), 0);
    QVERIFY(writeFile(url(u"a.png"_s), "new content"));
    QCOMPARE(content(u"b.png"_s), "new content");
    QCOMPARE(statusOf(path(u"a.png"_s)).st_nlink, nlink_t(2));
}

void WriteFileTest::writeFile_keepsSymbolicLinks()
{
    put(u"elsewhere/real.png"_s, "old");
    QVERIFY(QFile::link(u"elsewhere/real.png"_s, path(u"b.png"_s)));
    QVERIFY(QFile::link(u"b.png"_s, path(u"a.png"_s)));
    QVERIFY(writeFile(url(u"a.png"_s), "new content"));
    QVERIFY(S_ISLNK(statusOf(path(u"a.png"_s)).st_mode));
    QVERIFY(S_ISLNK(statusOf(path(u"b.png"_s)).st_mode));
    QCOMPARE(content(u"elsewhere/real.png"_s), "new content");
}

void WriteFileTest::writeFile_throughDanglingLinkMakesItsFile_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("relative") << u"relative.png"_s;
    QTest::newRow("absolute") << u"absolute.png"_s;
    QTest::newRow("link to a link") << u"second.png"_s;
}

void WriteFileTest::writeFile_throughDanglingLinkMakesItsFile()
{
    QFETCH(const QString, link);
    QVERIFY(QDir(m_folder->path()).mkdir(u"elsewhere"_s));
    QVERIFY(QFile::link(u"elsewhere/new.png"_s, path(u"relative.png"_s)));
    QVERIFY(QFile::link(path(u"elsewhere/new.png"_s), path(u"absolute.png"_s)));
    QVERIFY(QFile::link(u"relative.png"_s, path(u"second.png"_s)));
    const QStringList before = names();
    QCOMPARE(sentence(writeFile(url(link), "content")), u"no error"_s);
    QCOMPARE(content(u"elsewhere/new.png"_s), "content");
    QCOMPARE(names(), before);
    QVERIFY(S_ISLNK(statusOf(path(link)).st_mode));
}

void WriteFileTest::writeFile_isSeenByOpenHandles()
{
    put(u"a.png"_s, "old");
    QFile open(path(u"a.png"_s));
    QVERIFY(open.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    QVERIFY(writeFile(url(u"a.png"_s), "new content"));
    QCOMPARE(open.readAll(), "new content");
}

void WriteFileTest::writeFile_inClosedFolderReplacesAnOpenFile()
{
    put(u"a.png"_s, "old");
    QVERIFY(
        QFile::setPermissions(path(u"a.png"_s), ownerOnly | QFile::ReadOther | QFile::WriteOther));
    openToOthers();
    const auto result = inChild([this] {
        return dropPrivileges() ? sentence(writeFile(url(u"a.png"_s), "new content"))
                                : u"still root"_s;
    });
    QCOMPARE(result.answer, u"no error"_s);
    QCOMPARE(content(u"a.png"_s), "new content");
    QCOMPARE(names(), QStringList(u"a.png"_s));
}

void WriteFileTest::writeFile_toWhatIsNoFileFails_data()
{
    addKindsOfNoFile();
}

void WriteFileTest::writeFile_toWhatIsNoFileFails()
{
    QFETCH(const QString, kind);
    const QString path = makeNoFile(kind, u"x.png"_s);
    QVERIFY(!path.isEmpty());
    const QStringList before = names();
    const auto result = inChild([&path] { // which may hang
        return sentence(writeFile(QUrl::fromLocalFile(path), "content"));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer, u"Could not write \"%1\": It is not a regular file."_s.arg(
                                QFileInfo(path).fileName()));
    QCOMPARE(names(), before);
}

// Some devices do something when they are opened.
void WriteFileTest::writeFile_doesNotEvenOpenWhatIsNoFile()
{
    QCOMPARE(mkfifo(qPrintable(path(u"pipe.png"_s)), 0600), 0);
    static int g_opened;
    g_opened = 0;
    faults::observeOpening([](const char *) { ++g_opened; }, qPrintable(m_folder->path()));
    const auto written = writeFile(url(u"pipe.png"_s), "content");
    faults::observeOpening(nullptr);
    QVERIFY(!written);
    QCOMPARE(g_opened, 0);
}

void WriteFileTest::writeFile_overFolderPutInPlaceOfTheFileFails()
{
    put(u"a.png"_s);
    faults::observeOpening(
        [](const char *opened) {
            if (qstrcmp(strrchr(opened, '/'), "/a.png") == 0) {
                unlink(opened);
                mkdir(opened, 0700);
            }
        },
        qPrintable(m_folder->path()));
    const auto written = writeFile(url(u"a.png"_s), "content");
    faults::observeOpening(nullptr);
    QCOMPARE(sentence(written), u"Could not write \"a.png\": It is not a regular file."_s);
    QCOMPARE(names(), QStringList(u"a.png"_s));
}

void WriteFileTest::writeFile_withoutFolderFails_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing folder") << u"none/new.png"_s;
    QTest::newRow("below a file") << u"file/new.png"_s;
    QTest::newRow("link to itself") << u"loop-new.png"_s;
    QTest::newRow("link into a missing folder") << u"link-new.png"_s;
    QTest::newRow("name too long") << QString(300, u'x') + u"new.png"_s;
}

void WriteFileTest::writeFile_withoutFolderFails()
{
    QFETCH(const QString, name);
    put(u"file"_s);
    QVERIFY(QFile::link(u"loop-new.png"_s, path(u"loop-new.png"_s)));
    QVERIFY(QFile::link(u"none/new.png"_s, path(u"link-new.png"_s)));
    const QStringList before = names();
    const QString error = sentence(writeFile(url(name), "content"));
    QVERIFY2(error.contains(u"new.png\": "_s), qPrintable(error));
    QCOMPARE(names(), before);
    QCOMPARE(content(u"file"_s), "x");
}

void WriteFileTest::writeFile_toForbiddenFileKeepsIt_data()
{
    QTest::addColumn<QFile::Permissions>("permissions");
    QTest::newRow("closed") << QFile::Permissions(ownerOnly);
    QTest::newRow("read only") << (ownerOnly | QFile::ReadOther);
    QTest::newRow("write only") << (ownerOnly | QFile::WriteOther);
}

void WriteFileTest::writeFile_toForbiddenFileKeepsIt()
{
    QFETCH(const QFile::Permissions, permissions);
    put(u"a.png"_s, "old");
    QVERIFY(QFile::setPermissions(path(u"a.png"_s), permissions));
    openToOthers(true);
    const struct stat before = statusOf(path(u"a.png"_s));
    const auto result = inChild([this] {
        return dropPrivileges() ? sentence(writeFile(url(u"a.png"_s), "new content"))
                                : u"still root"_s;
    });
    QCOMPARE(result.answer, u"Could not write \"a.png\": Permission denied."_s);
    QCOMPARE(content(u"a.png"_s), "old");
    QCOMPARE(names(), QStringList(u"a.png"_s));
    QCOMPARE(statusOf(path(u"a.png"_s)).st_ino, before.st_ino);
}

QTEST_GUILESS_MAIN(WriteFileTest)
#include "tst_writefile.moc"
