// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"

#include "pipeline/folder.h"
#include "pipeline/tree.h"

#include <QDir>
#include <QProcess>
#include <QTest>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// Saves on the file systems that people have, each in an image that only this process sees.
class FileSystemsTest : public QObject
{
    Q_OBJECT

public:
    explicit FileSystemsTest(bool canMount) : m_canMount(canMount) {}

private Q_SLOTS:
    void cleanup();

    void saves_doWhatTheyPromise_data();
    void saves_doWhatTheyPromise();
    void fullDisk_costsNoPicture_data() { saves_doWhatTheyPromise_data(); }
    void fullDisk_costsNoPicture();

private:
    /// Makes and mounts one; returns why that is impossible.
    QString mountNew(const QString &type);
    QString path(const QString &name) const { return m_folder->filePath(u"disk/"_s + name); }
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(path(name)); }
    QByteArray content(const QString &name) const;
    bool put(const QString &name, const QByteArray &content) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    bool m_canMount;
    bool m_isMounted = false;
};

namespace {

/// What it says when it fails.
QString failureOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PATH"_s, environment.value(u"PATH"_s) + u":/usr/sbin:/sbin"_s);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(u"env"_s, QStringList{program} + arguments); // which searches that PATH
    process.waitForFinished();
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0
               ? QString()
               : program + u": "_s + QString::fromLocal8Bit(process.readAll()).simplified();
}

const CompressionOptions overwriting{.outputDestination = OutputDestination::overwrite};

} // namespace

void FileSystemsTest::cleanup()
{
    if (std::exchange(m_isMounted, false))
        QCOMPARE(umount(qPrintable(m_folder->filePath(u"disk"_s))), 0);
    m_folder.reset();
}

QString FileSystemsTest::mountNew(const QString &type)
{
    if (!m_canMount)
        return u"Only root can mount images."_s;
    m_folder = std::make_unique<QTemporaryDir>();
    const QString folder = m_folder->filePath(u"disk"_s);
    QDir().mkdir(folder);
    QString failure;
    if (type == u"tmpfs") {
        failure = failureOf(u"mount"_s, {u"-t"_s, type, u"-o"_s, u"size=64m"_s, type, folder});
    } else {
        QFile image(m_folder->filePath(u"image"_s));
        if (!image.open(QIODevice::WriteOnly) || !image.resize(qint64(400) << 20)) // mostly holes
            return u"There is no room for an image."_s;
        failure = failureOf(u"mkfs."_s + type, {image.fileName()});
        if (failure.isEmpty())
            failure = failureOf(u"mount"_s,
                                {u"-t"_s, type, u"-o"_s, u"loop"_s, image.fileName(), folder});
    }
    m_isMounted = failure.isEmpty();
    return failure;
}

bool FileSystemsTest::put(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray FileSystemsTest::content(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

void FileSystemsTest::saves_doWhatTheyPromise_data()
{
    QTest::addColumn<QString>("type");
    for (const auto *type : {"tmpfs", "ext4", "btrfs", "xfs", "vfat", "exfat"})
        QTest::newRow(type) << QString::fromLatin1(type);
}

void FileSystemsTest::saves_doWhatTheyPromise()
{
    QFETCH(const QString, type);
    if (const QString reason = mountNew(type); !reason.isEmpty())
        QSKIP(qPrintable(reason));
    const QByteArray old = bytes(500'000, 1);
    QVERIFY(put(u"a.png"_s, old));
    const ino_t inode = statusOf(path(u"a.png"_s)).st_ino;
    const QStringList atFirst = QDir(path({})).entryList(QDir::Files | QDir::Hidden);

    for (const int size : {300'000, 700'000}) {
        const QByteArray fresh = bytes(size, size);
        const auto read = readSource(url(u"a.png"_s), overwriting);
        QVERIFY(read);
        const auto written = writeOutput(url(u"a.png"_s), overwriting, fresh, read->digest);
        QCOMPARE(sentence(written), u"no error"_s);
        QVERIFY(content(u"a.png"_s) == fresh);
        QCOMPARE(statusOf(path(u"a.png"_s)).st_ino, inode);
        QCOMPARE(QDir(path({})).entryList(QDir::Files | QDir::Hidden), atFirst);

        const auto late = writeOutput(url(u"a.png"_s), overwriting, old, read->digest);
        QCOMPARE(sentence(late), u"Could not write \"a.png\": It has changed since it was read."_s);
        QVERIFY(content(u"a.png"_s) == fresh);
        QCOMPARE(QDir(path({})).entryList(QDir::Files | QDir::Hidden), atFirst);
    }
    for (const auto &name : {u"a-pixpress.png"_s, u"a-pixpress-1.png"_s}) {
        const auto copied = writeOutput(url(u"a.png"_s), {}, old);
        QCOMPARE(sentence(copied), u"no error"_s);
        QCOMPARE(*copied, url(name));
        QVERIFY(content(name) == old);
    }
    QCOMPARE(QDir(path({})).entryList(QDir::Files | QDir::Hidden).size(), atFirst.size() + 2);
}

void FileSystemsTest::fullDisk_costsNoPicture()
{
    QFETCH(const QString, type);
    if (const QString reason = mountNew(type); !reason.isEmpty())
        QSKIP(qPrintable(reason));
    const QByteArray old = bytes(3'000'000, 1);
    QVERIFY(put(u"a.png"_s, old));
    QFile filler(path(u"filler"_s));
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    for (const int size : {1 << 20, 4096}) {
        const QByteArray block = bytes(size);
        while (filler.write(block) == block.size()) {
        }
    }
    ::fsync(filler.handle());
    for (const int size : {1'000'000, 9'000'000}) {
        const QByteArray fresh = bytes(size, 2);
        const auto read = readSource(url(u"a.png"_s), overwriting);
        QVERIFY(read);
        const auto written = writeOutput(url(u"a.png"_s), overwriting, fresh, read->digest);
        qInfo("%s", qPrintable(sentence(written)));
        // Where copies share their blocks there may be room for one.
        if (written) {
            QVERIFY(content(u"a.png"_s) == fresh);
            QVERIFY(put(u"a.png"_s, old));
        } else {
            QVERIFY(written.error().contains(qt_error_string(ENOSPC)));
            QVERIFY(content(u"a.png"_s) == old);
        }
        QVERIFY(!QFile::exists(path(u"a.png.pixpress-old"_s)));
        const auto copied = writeOutput(url(u"a.png"_s), {}, bytes(9'000'000, 3));
        QVERIFY(!copied);
        QVERIFY(!QFile::exists(path(u"a-pixpress.png"_s)));
    }
}

int main(int argc, char *argv[])
{
    const bool canMount = geteuid() == 0 && unshare(CLONE_NEWNS) == 0 &&
                          mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    const QCoreApplication application(argc, argv);
    FileSystemsTest test(canMount);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_filesystems.moc"
