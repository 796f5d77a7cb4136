// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/outputname.h"
#include "pipeline/queueoftest.h"
#include "pipeline/tree.h"
#include "support/faults/faults.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;
using faults::Call;
using faults::How;

namespace {

/// What is at the output's name before the task runs.
enum class Target {
    missing,
    file,
    hardLinked,
    symbolicLink,
    danglingLink,
    readOnlyFile,
    readOnlyFolder,
};

struct Named
{
    Target target;
    const char *name;
};

constexpr Named targets[] = {
    {Target::missing, "new"},
    {Target::file, "existing"},
    {Target::hardLinked, "hard-linked"},
    {Target::symbolicLink, "symbolic link"},
    {Target::danglingLink, "dangling link"},
    {Target::readOnlyFile, "read-only"},
    {Target::readOnlyFolder, "in a read-only folder"},
};

const QByteArray sourceContent(5000, 's');
const QByteArray oldContent(2000, 'o');
const QByteArray newContent(3000, 'n');

bool put(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
           chmod(qPrintable(path), 0666) == 0;
}

} // namespace

/// The same promises as of a single save, through the queue: whatever call on the disk fails, no
/// picture is lost, the row says what went wrong, and the next task runs.
class QueueDiskFaultsTest : public QObject, private QueueOfTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void failingCall_costsNoPictureAndStopsNothing_data();
    void failingCall_costsNoPictureAndStopsNothing();

private:
    /// Fills the folder that the faults are in. Returns the output's first name.
    QString prepare(Target target, const CompressionOptions &options);
    /// One in that folder and one that goes well.
    void addTasks(const CompressionOptions &options);
    void judge(const Tree &before, const QString &target, const CompressionOptions &options,
               Call failed);

    QString path(const QString &name) const { return m_root->path() + u'/' + name; }
    QString broken(const QString &name = {}) const { return path(u"broken/"_s + name); }

    std::unique_ptr<QTemporaryDir> m_root;
    int m_tasks = 0;
    int m_met = 0;
    int m_failed = 0;
};

void QueueDiskFaultsTest::initTestCase()
{
    makeQueue();
    m_output = newContent;
    m_root = std::make_unique<QTemporaryDir>(quickTemplate());
    QVERIFY(m_root->isValid());
    QCOMPARE(chmod(qPrintable(m_root->path()), 0755), 0);
}

void QueueDiskFaultsTest::cleanup()
{
    faults::disarm();
}

void QueueDiskFaultsTest::cleanupTestCase()
{
    qInfo("%d tasks met %d failing calls; %d of them failed.", m_tasks, m_met, m_failed);
    for (const QString &folder : {u"in"_s, u"out"_s})
        chmod(qPrintable(broken(folder)), 0777); // so that it can be removed
    removeQueue();
}

void QueueDiskFaultsTest::failingCall_costsNoPictureAndStopsNothing_data()
{
    QTest::addColumn<OutputDestination>("destination");
    QTest::addColumn<bool>("converts");
    QTest::addColumn<Target>("target");
    for (const OutputDestination destination : allCases<OutputDestination>()) {
        for (const bool converts : {false, true}) {
            for (const auto &[target, name] : targets) {
                const bool isSource = destination == OutputDestination::overwrite && !converts;
                if (isSource && (target == Target::missing || target == Target::danglingLink))
                    continue;
                QTest::addRow("%s%s, %s", qPrintable(rawValue(destination)),
                              converts ? ", converted" : "", name)
                    << destination << converts << target;
            }
        }
    }
}

void QueueDiskFaultsTest::failingCall_costsNoPictureAndStopsNothing()
{
    QFETCH(const OutputDestination, destination);
    QFETCH(const bool, converts);
    QFETCH(const Target, target);
    const CompressionOptions options{.convertEnabled = converts,
                                     .convertFormat = ImageFormat::webp,
                                     .outputDestination = destination,
                                     .customFolderURL = QUrl::fromLocalFile(broken(u"out"_s))};
    QList<faults::Fault> faults;
    for (const Call call : faults::allCalls) {
        for (const int error : {ENOSPC, EIO, EACCES, EDQUOT})
            faults.append({.call = call, .nth = 1, .error = error});
        faults.append({.call = call, .nth = 1, .error = EIO, .how = How::brief});
    }
    for (faults::Fault fault : faults) {
        for (int met = 1; met > 0; ++fault.nth) {
            const QString output = prepare(target, options);
            QVERIFY(!output.isEmpty());
            const Tree before = treeOf(path(u"broken"_s));
            {
                const BoundByPermissions bound;
                faults::arm(fault, qPrintable(path(u"broken"_s)));
                addTasks(options);
                while (m_queue->activeTasks() > 0)
                    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
                met = faults::disarm();
            }
            m_met += met;
            ++m_tasks;
            judge(before, output, options, fault.call);
            if (QTest::currentTestFailed()) {
                qWarning("%s %d %s, %s", faults::name(fault.call), fault.nth,
                         faults::name(fault.how), strerrorname_np(fault.error));
                return;
            }
        }
    }
}

QString QueueDiskFaultsTest::prepare(Target target, const CompressionOptions &options)
{
    for (const QString &folder : {u"in"_s, u"out"_s})
        chmod(qPrintable(broken(folder)), 0777);
    QDir(path(u"broken"_s)).removeRecursively();
    QDir(path(u"healthy"_s)).removeRecursively();
    if (!QDir().mkdir(path(u"healthy"_s)) || chmod(qPrintable(path(u"healthy"_s)), 0777) != 0 ||
        !put(path(u"healthy/next.png"_s), sourceContent))
        return {};
    for (const QString &folder : {u"in"_s, u"out"_s, u"elsewhere"_s}) {
        if (!QDir().mkpath(broken(folder)) || chmod(qPrintable(broken(folder)), 0777) != 0)
            return {};
    }
    const QString source = broken(u"in/a.png"_s);
    const QString other = broken(u"elsewhere/other.png"_s);
    const QString output = OutputName(QUrl::fromLocalFile(source), options).url().toLocalFile();
    bool done = put(source, sourceContent);
    if (output != source && target != Target::missing && target != Target::danglingLink)
        done &= put(output, oldContent);
    switch (target) {
    case Target::missing:
    case Target::file: break;
    case Target::hardLinked: done &= link(qPrintable(output), qPrintable(other)) == 0; break;
    case Target::symbolicLink:
        done &= QFile::rename(output, other) && QFile::link(other, output);
        break;
    case Target::danglingLink: done &= QFile::link(other, output); break;
    case Target::readOnlyFile: done &= chmod(qPrintable(output), 0444) == 0; break;
    case Target::readOnlyFolder:
        done &= chmod(qPrintable(QFileInfo(output).path()), 0555) == 0;
        break;
    }
    return done ? output : QString();
}

void QueueDiskFaultsTest::addTasks(const CompressionOptions &options)
{
    const QUrl task = QUrl::fromLocalFile(broken(u"in/a.png"_s));
    const QUrl next = QUrl::fromLocalFile(path(u"healthy/next.png"_s));
    if (options.outputDestination != OutputDestination::customFolder) {
        add({task, next}, options);
    } else { // which the next one may not have, as it is where the faults are
        add({task}, options);
        add({next});
    }
}

void QueueDiskFaultsTest::judge(const Tree &before, const QString &target,
                                const CompressionOptions &options, Call failed)
{
    const QStringList rows = statuses();
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows[1], u"completed"_s);
    const TaskStatus ended = m_queue->tasks()[0].status;
    m_queue->clearCompleted();
    Tree after = treeOf(path(u"broken"_s));

    if (!std::holds_alternative<status::Completed>(ended)) {
        ++m_failed;
        static const QRegularExpression sentence(
            u"^Could not (read|write) \"[^\"]+\\.(png|webp)\": .+[^.]\\.$"_s);
        QVERIFY2(sentence.match(rows[0]).hasMatch(), qPrintable(rows[0]));
        QVERIFY2(!rows[0].contains(u"put back"_s), qPrintable(rows[0]));
        QVERIFY2(after == before, qPrintable(rows[0] + u' ' + difference(before, after)));
        return;
    }

    const QString output = std::get<status::Completed>(ended).result.outputURL.toLocalFile();
    const QString name = output.mid(broken().size());
    QVERIFY(after.contains(name));
    const QString leadsTo = QFileInfo(output).isSymLink()
                                ? QFileInfo(output).symLinkTarget().mid(broken().size())
                                : name;
    if (options.outputDestination == OutputDestination::overwrite)
        QCOMPARE(output, target);
    else
        QVERIFY2(!before.contains(leadsTo), "a picture was replaced");
    // What leads to the output has the new content, in the file that was there; nothing else has
    // changed.
    const ino_t inode = after[leadsTo].inode;
    Tree expected = before;
    for (const QString &path : after.keys()) {
        Entry &entry = after[path];
        if (entry.inode != inode)
            continue;
        QVERIFY2(entry.content == newContent, qPrintable(path));
        if (expected.contains(path))
            expected[path].content = newContent;
        else
            expected[path] = entry;
    }
    if (failed == Call::unlink) { // A copy of the original that could not be removed harms nothing.
        const QString copy = leadsTo + u".pixpress-old"_s;
        QVERIFY(!after.contains(copy) || after.take(copy).content == before[leadsTo].content);
    }
    QVERIFY2(after == expected, qPrintable(difference(expected, after)));
    if (options.outputDestination != OutputDestination::overwrite || options.convertEnabled)
        QVERIFY(after[u"in/a.png"_s].content == sourceContent);
}

QTEST_GUILESS_MAIN(QueueDiskFaultsTest)
#include "tst_queuediskfaults.moc"
