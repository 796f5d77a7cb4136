// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"
#include "pipeline/interrupt.h"

#include "pipeline/folder.h"
#include "support/child.h"
#include "support/faults/faults.h"

#include <QDir>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTest>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <sys/file.h>
#include <sys/syscall.h>
#include <unistd.h>

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
    void writeFile_onPoorFileSystemsDoesTheSame_data();
    void writeFile_onPoorFileSystemsDoesTheSame();

    void copy_hasTheOriginalsPermissionsAndTime();
    void copy_ofAnothersFileIsPrivateUntilItIsTheirs();
    void copyThatIsLeft_isNamedAndKept_data();
    void copyThatIsLeft_isNamedAndKept();
    void copyWithoutAName_leavesTheFile();

    void changedFile_isKept_data();
    void changedFile_isKept();
    void fileChangedMeanwhile_isKept_data();
    void fileChangedMeanwhile_isKept();
    void fileOfTheSameContent_isReplaced();
    void lockedFile_isKept();
    void leasedFile_isWaitedFor_data();
    void leasedFile_isWaitedFor();
    void twoProcesses_oneWins();
    void limitOnFileSizes_isAFailure();

private:
    /// Reads a.png as a task that overwrites does, and writes this over it.
    QString
    overwrite(const QByteArray &bytes, const std::function<void()> &meanwhile = [] {}) const;
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
    if (geteuid() != 0)
        QSKIP("Only root can make a folder that is closed to its user.");
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
    if (geteuid() != 0)
        QSKIP("Only root can make files of others.");
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

void WriteFileTest::writeFile_onPoorFileSystemsDoesTheSame_data()
{
    QTest::addColumn<faults::Abilities>("abilities");
    QTest::newRow("no unnamed files") << faults::Abilities{.unnamedFiles = false};
    QTest::newRow("links only") << faults::Abilities{.unnamedFiles = false,
                                                     .exclusiveRename = false};
    QTest::newRow("renaming only") << faults::Abilities{.unnamedFiles = false, .links = false};
    QTest::newRow("plain renaming only")
        << faults::Abilities{.unnamedFiles = false, .exclusiveRename = false, .links = false};
}

void WriteFileTest::writeFile_onPoorFileSystemsDoesTheSame()
{
    QFETCH(const faults::Abilities, abilities);
    put(u"a.png"_s, "old");
    faults::limit(abilities);
    const QString overwritten = overwrite("new content");
    const QString made = sentence(writeFile(url(u"b.png"_s), "another"));
    const auto copied = writeOutput(url(u"b.png"_s), {}, "copy");
    const auto again = writeOutput(url(u"b.png"_s), {}, "another copy");
    faults::limit({});
    QCOMPARE(overwritten, u"no error"_s);
    QCOMPARE(made, u"no error"_s);
    QVERIFY(copied && again);
    QCOMPARE(content(u"a.png"_s), "new content");
    QCOMPARE(content(u"b.png"_s), "another");
    QCOMPARE(content(u"b-pixpress.png"_s), "copy");
    QCOMPARE(content(u"b-pixpress-1.png"_s), "another copy");
    QCOMPARE(names().size(), 4);
}

QString WriteFileTest::overwrite(const QByteArray &bytes,
                                 const std::function<void()> &meanwhile) const
{
    const CompressionOptions options{.outputDestination = OutputDestination::overwrite};
    const auto read = readSource(url(u"a.png"_s), options);
    if (!read)
        return read.error();
    meanwhile();
    return sentence(writeOutput(url(u"a.png"_s), options, bytes, read->digest));
}

namespace {

const QString hasChanged = u"Could not write \"a.png\": It has changed since it was read."_s;

/// What is known of the copy when it gets its name.
struct stat g_copy;
QByteArray g_folder;

void lookAtCopy(faults::Call call, int descriptor)
{
    struct stat status{};
    if (call == faults::Call::fsync && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        g_copy.st_ino == 0)
        g_copy = status;
}

} // namespace

void WriteFileTest::copy_hasTheOriginalsPermissionsAndTime()
{
    put(u"a.png"_s, "old");
    QCOMPARE(chmod(qPrintable(path(u"a.png"_s)), 0640), 0);
    const timespec longAgo[] = {{1000, 5}, {2000, 6}};
    QCOMPARE(utimensat(AT_FDCWD, qPrintable(path(u"a.png"_s)), longAgo, 0), 0);
    g_copy = {};
    faults::observe(lookAtCopy, qPrintable(m_folder->path()));
    const QString written = overwrite("new content");
    faults::observe(nullptr);
    QCOMPARE(written, u"no error"_s);
    QVERIFY(g_copy.st_ino != statusOf(path(u"a.png"_s)).st_ino);
    QCOMPARE(g_copy.st_size, 3);
    QCOMPARE(g_copy.st_mode & 07777, 0640U);
    QCOMPARE(g_copy.st_mtim.tv_sec, 2000);
    QCOMPARE(g_copy.st_mtim.tv_nsec, 6);
}

void WriteFileTest::copy_ofAnothersFileIsPrivateUntilItIsTheirs()
{
    if (geteuid() != 0)
        QSKIP("Only root can make files of others.");
    put(u"a.png"_s, "old");
    QCOMPARE(chmod(qPrintable(path(u"a.png"_s)), 0666), 0); // not this user's, who may write to it
    QCOMPARE(chmod(qPrintable(m_folder->path()), 0777), 0);
    const auto result = inChild([this] {
        if (!dropPrivileges())
            return u"still root"_s;
        g_copy = {};
        faults::observe(lookAtCopy, qPrintable(m_folder->path()));
        const QString written = overwrite("new content");
        return u"%1 %2"_s.arg(written).arg(g_copy.st_mode & 07777, 0, 8);
    });
    QCOMPARE(result.answer, u"no error 600"_s);
}

void WriteFileTest::copyThatIsLeft_isNamedAndKept_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("file") << u"file"_s;
    QTest::newRow("beside the file of a link") << u"linked"_s;
    QTest::newRow("dangling link") << u"link"_s;
    QTest::newRow("appears while the task runs") << u"late"_s;
    QTest::newRow("of a converted picture") << u"converted"_s;
}

void WriteFileTest::copyThatIsLeft_isNamedAndKept()
{
    QFETCH(const QString, kind);
    QString real = u"a.png"_s;
    if (kind == u"linked") {
        real = u"elsewhere/b.png"_s;
        put(real, "torn");
        QVERIFY(QFile::link(path(real), path(u"a.png"_s)));
    } else {
        put(u"a.png"_s, "torn");
    }
    CompressionOptions options{.outputDestination = OutputDestination::overwrite};
    if (kind == u"converted") {
        options.convertEnabled = true;
        real = u"a.webp"_s;
        put(real, "torn");
    }
    const auto leave = [&] {
        if (kind == u"link")
            QVERIFY(QFile::link(u"nowhere"_s, path(real + u".pixpress-old"_s)));
        else
            put(real + u".pixpress-old"_s, "old");
    };
    if (kind != u"late")
        leave();
    QString error = sentence(readSource(url(u"a.png"_s), options));
    if (kind == u"late")
        error = overwrite("new", leave);
    const QString name = QFileInfo(real).fileName();
    QCOMPARE(error, u"Could not write \"%1\": An interrupted save left the original in "
                    "\"%2.pixpress-old\". Restore or delete that file first."_s.arg(
                        kind == u"linked" ? u"a.png"_s : name, name));
    QCOMPARE(content(real), "torn");
    if (kind != u"link")
        QCOMPARE(content(real + u".pixpress-old"_s), "old");
    // Copies hurt nobody.
    QVERIFY(writeOutput(url(u"a.png"_s), {}, "copy"));
}

void WriteFileTest::copyWithoutAName_leavesTheFile()
{
    const QString name = QString(250, u'x') + u".png"_s; // No longer name is possible.
    put(name, "old");
    QCOMPARE(sentence(writeFile(url(name), "new content")),
             u"Could not write \"%1\": %2."_s.arg(name, qt_error_string(ENAMETOOLONG)));
    QCOMPARE(content(name), "old");
    QCOMPARE(names(), QStringList(name));
}

void WriteFileTest::changedFile_isKept_data()
{
    QTest::addColumn<QString>("how");
    for (const auto *how : {"in place", "in place, as long and as old", "by rename", "removed"})
        QTest::newRow(how) << QString::fromLatin1(how);
}

// An editor that saves while the service compresses.
void WriteFileTest::changedFile_isKept()
{
    QFETCH(const QString, how);
    put(u"a.png"_s, "old");
    const QString error = overwrite("new content", [&] {
        const struct stat before = statusOf(path(u"a.png"_s));
        if (how == u"removed") {
            QVERIFY(QFile::remove(path(u"a.png"_s)));
        } else if (how == u"by rename") {
            put(u"b.png"_s, "edit");
            QCOMPARE(rename(qPrintable(path(u"b.png"_s)), qPrintable(path(u"a.png"_s))), 0);
        } else {
            put(u"a.png"_s, "edt");
            if (how != u"in place") {
                const timespec times[] = {before.st_atim, before.st_mtim};
                QCOMPARE(utimensat(AT_FDCWD, qPrintable(path(u"a.png"_s)), times, 0), 0);
            }
        }
    });
    if (how == u"removed") {
        QCOMPARE(error, u"Could not write \"a.png\": %1."_s.arg(qt_error_string(ENOENT)));
        QCOMPARE(names(), QStringList());
        return;
    }
    QCOMPARE(error, hasChanged);
    QCOMPARE(content(u"a.png"_s), how == u"by rename" ? "edit" : "edt");
    QCOMPARE(names(), QStringList(u"a.png"_s));
}

namespace {

int g_left; // calls until the editor saves
bool g_byRename;
bool g_hasSaved;

/// Saves like an editor, in the midst of overwriting. One that would have to wait saves later.
void edit(faults::Call call, int)
{
    if (call == faults::Call::close || g_left-- != 0)
        return;
    const QByteArray name = g_folder + "/a.png";
    const QByteArray other = g_folder + "/edit.png";
    const auto file =
        static_cast<int>(syscall(SYS_openat, AT_FDCWD, (g_byRename ? other : name).constData(),
                                 O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK, 0644));
    if (file == -1)
        return;
    syscall(SYS_pwrite64, file, "the edit", 8, 0L);
    syscall(SYS_close, file);
    if (g_byRename)
        syscall(SYS_rename, other.constData(), name.constData());
    g_hasSaved = true;
}

} // namespace

void WriteFileTest::fileChangedMeanwhile_isKept_data()
{
    QTest::addColumn<bool>("byRename");
    QTest::newRow("in place") << false;
    QTest::newRow("by rename") << true;
}

// At each call of overwriting.
void WriteFileTest::fileChangedMeanwhile_isKept()
{
    QFETCH(const bool, byRename);
    g_byRename = byRename;
    g_folder = m_folder->path().toUtf8();
    int saved = 0;
    int waited = 0;
    int refused = 0;
    for (g_left = -1; g_left < 0;) {
        put(u"a.png"_s, "the original");
        g_hasSaved = false;
        const QString error = overwrite("new content", [&] {
            g_left = saved + waited;
            faults::observe(edit, g_folder.constData());
        });
        faults::observe(nullptr);
        // The name can also be taken when the picture has been written: the edit is what stays.
        QVERIFY(error == u"no error" || (g_hasSaved && error == hasChanged));
        QCOMPARE(content(u"a.png"_s), g_hasSaved ? "the edit" : "new content");
        QCOMPARE(names(), QStringList(u"a.png"_s));
        saved += g_hasSaved;
        waited += !g_hasSaved;
        refused += error == hasChanged;
    }
    QVERIFY(byRename ? refused >= 8 : waited >= 8);
}

void WriteFileTest::fileOfTheSameContent_isReplaced()
{
    put(u"a.png"_s, "old");
    QCOMPARE(overwrite("new content",
                       [this] {
                           put(u"b.png"_s, "old");
                           QCOMPARE(
                               rename(qPrintable(path(u"b.png"_s)), qPrintable(path(u"a.png"_s))),
                               0);
                       }),
             u"no error"_s);
    QCOMPARE(content(u"a.png"_s), "new content");
}

void WriteFileTest::lockedFile_isKept()
{
    put(u"a.png"_s, "old");
    QFile other(path(u"a.png"_s));
    QVERIFY(other.open(QIODevice::ReadOnly));
    QCOMPARE(flock(other.handle(), LOCK_EX), 0);
    QCOMPARE(overwrite("new content"),
             u"Could not write \"a.png\": Another program is using it."_s);
    QCOMPARE(content(u"a.png"_s), "old");
    other.close();
    QCOMPARE(overwrite("new content"), u"no error"_s);
}

void WriteFileTest::leasedFile_isWaitedFor_data()
{
    QTest::addColumn<bool>("givesUp");
    QTest::newRow("given up") << true;
    QTest::newRow("kept") << false;
}

// As file servers take them for their clients.
void WriteFileTest::leasedFile_isWaitedFor()
{
    QFETCH(const bool, givesUp);
    put(u"a.png"_s, "old");
    std::array<int, 2> ends{};
    QCOMPARE(pipe(ends.data()), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        alarm(20);
        sigset_t broken; // what the system says when somebody else wants the file
        sigemptyset(&broken);
        sigaddset(&broken, SIGIO);
        sigprocmask(SIG_BLOCK, &broken, nullptr);
        const int file = ::open(qPrintable(path(u"a.png"_s)), O_RDONLY | O_CLOEXEC);
        const char taken =
            fcntl(file, F_SETLEASE, F_WRLCK) == 0 || fcntl(file, F_SETLEASE, F_RDLCK) == 0;
        if (write(ends[1], &taken, 1) != 1)
            _exit(1);
        while (true) {
            sigwaitinfo(&broken, nullptr);
            if (givesUp)
                fcntl(file, F_SETLEASE, F_UNLCK);
        }
    }
    char taken = 0;
    QCOMPARE(read(ends[0], &taken, 1), 1);
    const auto cleanup = qScopeGuard([&] {
        kill(holder, SIGKILL);
        waitpid(holder, nullptr, 0);
        close(ends[0]);
        close(ends[1]);
    });
    if (!taken)
        QSKIP("This file system has no leases.");
    QCOMPARE(sentence(writeFile(url(u"a.png"_s), "new content")),
             givesUp ? u"no error"_s
                     : u"Could not write \"a.png\": Another program is using it."_s);
    if (givesUp)
        QCOMPARE(content(u"a.png"_s), "new content");
}

// Several pairs at once: they meet in different places.
void WriteFileTest::twoProcesses_oneWins()
{
    int refused = 0;
    for (int round = 0; round < 20; ++round) {
        put(u"a.png"_s, bytes(300'000, 1));
        std::array<std::array<int, 2>, 2> ends{};
        std::array<int, 2> start{};
        QCOMPARE(pipe(start.data()), 0);
        std::array<pid_t, 2> children{};
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(pipe(ends[size_t(i)].data()), 0);
            children[size_t(i)] = fork();
            if (children[size_t(i)] != 0)
                continue;
            alarm(20);
            close(start[1]);
            const QString error = overwrite(bytes(100'000 + 50'000 * i, 2 + i), [&] {
                char none = 0;
                (void)!read(start[0], &none, 1); // until both have read
            });
            const char answer = error == u"no error" ? 'w' : error == hasChanged ? 'c' : '?';
            _exit(write(ends[size_t(i)][1], &answer, 1) == 1 ? 0 : 1);
        }
        close(start[0]);
        close(start[1]);
        QByteArray answers(2, '-');
        for (size_t i = 0; i < 2; ++i) {
            close(ends[i][1]);
            QCOMPARE(read(ends[i][0], answers.data() + i, 1), 1);
            close(ends[i][0]);
            waitpid(children[i], nullptr, 0);
        }
        QVERIFY2(answers == "wc" || answers == "cw" || answers == "ww", answers.constData());
        const QByteArray now = content(u"a.png"_s);
        QVERIFY(now == bytes(100'000, 2) || now == bytes(150'000, 3));
        if (answers == "wc")
            QVERIFY(now == bytes(100'000, 2));
        if (answers == "cw")
            QVERIFY(now == bytes(150'000, 3));
        refused += answers != "ww"; // else one had finished before the other one read
        QCOMPARE(names(), QStringList(u"a.png"_s));
    }
    QVERIFY(refused > 0);
}

void WriteFileTest::limitOnFileSizes_isAFailure()
{
    const auto result = inChild([this] {
        QObject context;
        onInterrupt(&context, [] {});
        const rlimit limit{50'000, 50'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        return sentence(writeFile(url(u"a.png"_s), bytes(60'000)));
    });
    QCOMPARE(result.signal, 0);
    QCOMPARE(result.answer, u"Could not write \"a.png\": %1."_s.arg(qt_error_string(EFBIG)));
    QCOMPARE(names(), QStringList());
}

QTEST_GUILESS_MAIN(WriteFileTest)
#include "tst_writefile.moc"
