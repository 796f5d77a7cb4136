// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queueoftest.h"
#include "pipeline/tree.h"

#include <QDir>
#include <QTest>

#include <cerrno>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

bool write(const char *path, const QByteArray &content)
{
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// Lets this process mount file systems that nobody else sees and that end with it. Only before it
/// has threads.
bool enterOwnNamespace()
{
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0)
        return false;
    if (user != 0 && !(write("/proc/self/setgroups", "deny") &&
                       write("/proc/self/uid_map", "0 " + QByteArray::number(user) + " 1") &&
                       write("/proc/self/gid_map", "0 " + QByteArray::number(group) + " 1")))
        return false;
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

constexpr qsizetype sourceSize = 60'000;

} // namespace

/// Saves to a real file system that takes no more.
class FullDiskTest : public QObject, private QueueOfTest
{
    Q_OBJECT

public:
    explicit FullDiskTest(bool canMount) : m_canMount(canMount) {}

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase() { removeQueue(); }

    void save_costsNoPictureAndStopsNothing_data();
    void save_costsNoPictureAndStopsNothing();

private:
    /// Makes what the name of the state says.
    bool prepare(const QString &state);
    QString disk(const QString &name) const { return m_folder->filePath(u"disk/"_s + name); }

    bool m_canMount;
    bool m_isMounted = false;
};

void FullDiskTest::initTestCase()
{
    if (!m_canMount)
        QSKIP("This process may not mount file systems.");
    makeQueue();
}

void FullDiskTest::cleanup()
{
    if (std::exchange(m_isMounted, false))
        QCOMPARE(umount(qPrintable(m_folder->filePath(u"disk"_s))), 0);
}

void FullDiskTest::save_costsNoPictureAndStopsNothing_data()
{
    QTest::addColumn<OutputDestination>("destination");
    QTest::addColumn<bool>("converts");
    QTest::addColumn<QString>("state");
    QTest::addColumn<qsizetype>("outputSize");
    for (const OutputDestination destination : allCases<OutputDestination>()) {
        for (const bool converts : {false, true}) {
            for (const auto *state : {"full", "room for a part", "no more files", "read-only"}) {
                for (const qsizetype size : {sourceSize / 2, sourceSize * 2})
                    QTest::addRow("%s%s, %s, %d bytes", qPrintable(rawValue(destination)),
                                  converts ? ", converted" : "", state, int(size))
                        << destination << converts << QString::fromLatin1(state) << size;
            }
        }
    }
}

void FullDiskTest::save_costsNoPictureAndStopsNothing()
{
    QFETCH(const OutputDestination, destination);
    QFETCH(const bool, converts);
    QFETCH(const QString, state);
    QFETCH(const qsizetype, outputSize);
    QVERIFY(prepare(state));
    m_output = QByteArray(outputSize, 'n');
    const Tree before = treeOf(disk(u"."_s));
    const CompressionOptions options{.convertEnabled = converts,
                                     .convertFormat = ImageFormat::webp,
                                     .outputDestination = destination,
                                     .customFolderURL = QUrl::fromLocalFile(disk(u"out"_s))};

    m_queue->clearCompleted();
    add({QUrl::fromLocalFile(disk(u"a.png"_s))}, options);
    add({file(u"next.png"_s)});
    QTRY_COMPARE(m_queue->activeTasks(), 0);
    QCOMPARE(statuses().last(), u"completed"_s);

    // Without room for a copy of the original nothing is overwritten.
    const bool isInPlace = destination == OutputDestination::overwrite && !converts;
    const QString room = state == u"full"_s              ? u"61 KB"_s
                         : state == u"room for a part"_s ? u"45 KB"_s
                                                         : QString();
    QString reason = qt_error_string(state == u"read-only"_s ? EROFS : ENOSPC);
    if (isInPlace && !room.isEmpty())
        reason +=
            u" (%1 more are needed to keep the original until the new picture is written)"_s.arg(
                room);
    const QString row = statuses().first();
    QVERIFY2(row.startsWith(u"Could not write \"a"_s) && row.endsWith(u"\": "_s + reason + u'.'),
             qPrintable(row));
    const Tree after = treeOf(disk(u"."_s));
    QVERIFY2(after == before, qPrintable(difference(before, after)));
}

bool FullDiskTest::prepare(const QString &state)
{
    const QString folder = m_folder->filePath(u"disk"_s);
    QDir().mkdir(folder);
    const bool fewFiles = state == u"no more files"_s;
    // The root, the source and the folder are three.
    m_isMounted = mount("none", qPrintable(folder), "tmpfs", 0,
                        fewFiles ? "size=1m,nr_inodes=3" : "size=300k,nr_inodes=20") == 0;
    if (!m_isMounted || !write(qPrintable(disk(u"a.png"_s)), QByteArray(sourceSize, 's')) ||
        !QDir().mkdir(disk(u"out"_s)))
        return false;
    if (fewFiles)
        return true;
    if (state == u"read-only"_s)
        return mount(nullptr, qPrintable(folder), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
    QFile filler(disk(u"filler"_s));
    if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return false;
    while (filler.write(QByteArray(4096, 'f')) == 4096) {
    }
    // Less than the smaller of the outputs.
    return state == u"full"_s || filler.resize(filler.size() - 20'000);
}

int main(int argc, char *argv[])
{
    const bool canMount = enterOwnNamespace();
    const QCoreApplication application(argc, argv);
    FullDiskTest test(canMount);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_fulldisk.moc"
