// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"

#include "support/child.h"
#include "support/faults/faults.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

using namespace pixpress;
using namespace Qt::StringLiterals;
namespace faults = pixpress::test::faults;
using faults::Call;
using faults::How;

/// Whatever call on the disk fails, and whenever: a picture that was there is there as before, and
/// of one that was not there is no trace.
class DiskFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup()
    {
        faults::disarm();
        faults::limit({});
    }
    void cleanupTestCase() { qInfo("%d failing disks were written to.", m_tried); }

    void everyFailure_isNoticed_data();
    void everyFailure_isNoticed();
    void failingWrite_costsNoPicture_data();
    void failingWrite_costsNoPicture();
    void failingRead_givesNoPartOfAPicture_data();
    void failingRead_givesNoPartOfAPicture();
    void outOfRoom_costsNoPicture_data();
    void outOfRoom_costsNoPicture();
    void interruption_isNoFailure_data();
    void interruption_isNoFailure();
    void unrestoredPicture_isBesideTheFile();
    void untouchedPicture_isNotSaidToBeLost_data();
    void untouchedPicture_isNotSaidToBeLost();
    void fault_reachesAProgramThatPreloadsIt();
    void fault_leavesOtherFoldersAlone();

private:
    /// The content of every file in the folder, by name; "link" for a symbolic link.
    QMap<QString, QByteArray> contents() const;
    void put(const QString &name, const QByteArray &content);
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(m_folder->filePath(name)); }
    void arm(const faults::Fault &fault) { faults::arm(fault, qPrintable(m_folder->path())); }

    std::unique_ptr<QTemporaryDir> m_folder;
    int m_tried = 0;
};

namespace {

enum class Target { missing, link, file };

/// What is written over what.
struct Scenario
{
    const char *name;
    Target target;
    qsizetype before;
    qsizetype after;
    bool isUnnamedRefused = false;
};

constexpr Scenario scenarios[] = {
    {"new, renamed", Target::missing, 0, 10'001, true},
    {"new and empty, renamed", Target::missing, 0, 0, true},
    {"new through a link, renamed", Target::link, 0, 10'001, true},
    {"new", Target::missing, 0, 10'001},
    {"new and empty", Target::missing, 0, 0},
    {"new through a link", Target::link, 0, 10'001},
    {"growing", Target::file, 5'003, 10'001},
    {"shrinking", Target::file, 10'001, 5'003},
    {"same size", Target::file, 7'000, 7'000},
    {"from nothing", Target::file, 0, 10'001},
    {"to nothing", Target::file, 10'001, 0},
    {"growing, renamed copy", Target::file, 5'003, 10'001, true},
    {"shrinking, renamed copy", Target::file, 10'001, 5'003, true},
};

QByteArray bytes(qsizetype size, char first)
{
    QByteArray result(size, Qt::Uninitialized);
    for (qsizetype i = 0; i < size; ++i)
        result[i] = static_cast<char>(first + i % 61);
    return result;
}

QString sentence(const auto &result)
{
    return result ? u"no error"_s : result.error();
}

const QString copyName = u"a.png.pixpress-old"_s;

} // namespace

void DiskFaultsTest::init()
{
    // The faults are not the disk's: one in memory fails as well, and need not be waited for.
    const QString memory = u"/dev/shm"_s;
    const QString base = QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    m_folder = std::make_unique<QTemporaryDir>(base + u"/pixpress-XXXXXX"_s);
    QVERIFY(m_folder->isValid());
}

QMap<QString, QByteArray> DiskFaultsTest::contents() const
{
    QMap<QString, QByteArray> result;
    const auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    for (const QFileInfo &info : QDir(m_folder->path()).entryInfoList(everything)) {
        QFile file(info.filePath());
        result[info.fileName()] = info.isSymLink()                 ? QByteArray("link")
                                  : file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                   : QByteArray("closed");
    }
    return result;
}

void DiskFaultsTest::put(const QString &name, const QByteArray &content)
{
    QFile file(m_folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void DiskFaultsTest::everyFailure_isNoticed_data()
{
    QTest::addColumn<bool>("existing");
    QTest::addColumn<bool>("isUnnamedRefused");
    QTest::addColumn<Call>("call");
    QTest::addColumn<int>("nth");
    QTest::addColumn<bool>("succeeds");
    const auto row = [](const char *name, bool isUnnamedRefused, Call call, int nth,
                        bool succeeds) {
        QTest::addRow("%s, %s %d", name, faults::name(call), nth)
            << QByteArrayView(name).startsWith("existing") << isUnnamedRefused << call << nth
            << succeeds;
    };
    row("existing", false, Call::open, 1, false);
    row("existing", false, Call::lock, 1, true); // Some file systems have none.
    row("existing", false, Call::read, 1, false);
    row("existing", false, Call::clone, 1, true);  // The copy is written instead.
    row("existing", false, Call::open, 2, true);   // There is another way to make a file.
    row("existing", false, Call::write, 1, false); // of the copy
    row("existing", false, Call::fsync, 1, false); // of the copy
    row("existing", false, Call::link, 1, true);   // There is another way to make a file.
    row("existing", false, Call::fsync, 2, false); // of its name
    row("existing", false, Call::write, 2, false); // of the file
    row("existing", false, Call::ftruncate, 1, false);
    row("existing", false, Call::fsync, 3, false); // of the file
    row("existing", false, Call::fsync, 4, true);  // of the copy's name, which may come back
    row("existing", true, Call::open, 2, false);
    row("existing", true, Call::rename, 1, false);
    row("new", false, Call::open, 1, true); // There is another way to make a file.
    row("new", false, Call::link, 1, true);
    row("new", false, Call::write, 1, false);
    row("new", false, Call::fsync, 1, false);
    row("new", false, Call::fsync, 2, false);
    row("new, renamed", true, Call::open, 1, false);
    row("new, renamed", true, Call::write, 1, false);
    row("new, renamed", true, Call::fsync, 1, false);
    row("new, renamed", true, Call::rename, 1, false);
    row("new, renamed", true, Call::fsync, 2, false);
}

// Guards the tests below, which take a call that is never met as a success.
void DiskFaultsTest::everyFailure_isNoticed()
{
    QFETCH(const bool, existing);
    QFETCH(const bool, isUnnamedRefused);
    QFETCH(const Call, call);
    QFETCH(const int, nth);
    QFETCH(const bool, succeeds);
    if (existing)
        put(u"a.png"_s, bytes(100, 'o'));
    faults::limit({.unnamedFiles = !isUnnamedRefused});
    arm({.call = call, .nth = nth, .error = EIO});
    const auto written = writeFile(url(u"a.png"_s), bytes(200, 'n'));
    QCOMPARE(faults::disarm(), 1);
    QCOMPARE(written.has_value(), succeeds);
    QCOMPARE(contents().keys(), existing || succeeds ? QStringList(u"a.png"_s) : QStringList());
}

void DiskFaultsTest::failingWrite_costsNoPicture_data()
{
    QTest::addColumn<const Scenario *>("scenario");
    QTest::addColumn<Call>("call");
    QTest::addColumn<How>("how");
    QTest::addColumn<int>("error");
    for (const Scenario &scenario : scenarios) {
        for (const Call call : faults::allCalls) {
            for (const How how : faults::allWays) {
                for (const int error : {ENOSPC, EIO, EACCES, EDQUOT})
                    QTest::addRow("%s, %s %s, %s", scenario.name, faults::name(call),
                                  faults::name(how), strerrorname_np(error))
                        << &scenario << call << how << error;
            }
            QTest::addRow("%s, %s interrupted", scenario.name, faults::name(call))
                << &scenario << call << How::once << EINTR;
        }
    }
}

void DiskFaultsTest::failingWrite_costsNoPicture()
{
    QFETCH(const Scenario *const, scenario);
    QFETCH(const Call, call);
    QFETCH(const How, how);
    QFETCH(const int, error);
    const QByteArray old = bytes(scenario->before, 'o');
    const QByteArray fresh = bytes(scenario->after, 'A');
    const bool lasting = how == How::always || how == How::dying;
    const bool isReading = call == Call::read || call == Call::stat;

    for (int nth = 1, met = 1; met > 0; ++nth) {
        QVERIFY(nth < 100);
        init();
        faults::limit({.unnamedFiles = !scenario->isUnnamedRefused});
        QMap<QString, QByteArray> before;
        switch (scenario->target) {
        case Target::missing: break;
        case Target::link:
            QVERIFY(QFile::link(u"real.png"_s, m_folder->filePath(u"a.png"_s)));
            before[u"a.png"_s] = "link";
            break;
        case Target::file:
            put(u"a.png"_s, old);
            before[u"a.png"_s] = old;
            break;
        }
        QMap<QString, QByteArray> after = before;
        after[scenario->target == Target::link ? u"real.png"_s : u"a.png"_s] = fresh;

        arm({.call = call, .nth = nth, .error = error, .how = how});
        const auto written = writeFile(url(u"a.png"_s), fresh);
        met = faults::disarm();
        m_tried += met > 0;

        const QByteArray context =
            "call " + QByteArray::number(nth) + ": " + sentence(written).toUtf8();
        QMap<QString, QByteArray> left = contents();
        const QByteArray copy = left.value(copyName, "none");
        if (call == Call::unlink && met > 0) { // what could not be removed
            QVERIFY2(!left.contains(copyName) || copy == old, context.constData());
            left.remove(copyName);
            left.removeIf([](auto file) { return file.key().startsWith(u".pixpress-part-"); });
        }
        if (written) {
            QVERIFY2(left == after, context.constData());
            // Never without a copy of all of the old content.
            if (met > 0 && lasting && call == Call::read && nth == 1)
                QVERIFY2(old.isEmpty(), context.constData());
            continue;
        }
        QVERIFY2(met > 0, context.constData());
        QVERIFY2(written.error().startsWith(u"Could not write \""_s) &&
                     written.error().contains(u".png\": "_s),
                 context.constData());
        // A permanent error cannot be undone, but the copy remains and the error names it.
        if (lasting && written.error().contains(copyName)) {
            QVERIFY2(copy == old, context.constData());
            continue;
        }
        QVERIFY2(left == before, context.constData());
        QVERIFY2(!written.error().contains(copyName), context.constData());
        if (!isReading)
            QVERIFY2(written.error().contains(qt_error_string(error)), context.constData());
    }
}

void DiskFaultsTest::failingRead_givesNoPartOfAPicture_data()
{
    QTest::addColumn<qsizetype>("size");
    QTest::addColumn<How>("how");
    QTest::addColumn<int>("error");
    for (const qsizetype size : {1, 100, 100'001}) {
        for (const How how : faults::allWays)
            QTest::addRow("%d bytes, %s", int(size), faults::name(how)) << size << how << EIO;
        QTest::addRow("%d bytes, interrupted", int(size)) << size << How::once << EINTR;
    }
}

void DiskFaultsTest::failingRead_givesNoPartOfAPicture()
{
    QFETCH(const qsizetype, size);
    QFETCH(const How, how);
    QFETCH(const int, error);
    const QByteArray content = bytes(size, 'o');
    put(u"a.png"_s, content);
    for (int nth = 1, met = 1; met > 0; ++nth) {
        QVERIFY(nth < 100);
        arm({.call = Call::read, .nth = nth, .error = error, .how = how});
        const auto read = readFile(url(u"a.png"_s));
        met = faults::disarm();
        QVERIFY(nth > 1 || met > 0);
        const QByteArray context =
            "call " + QByteArray::number(nth) + ": " +
            (read ? QByteArray::number(read->size()) + " bytes" : read.error().toUtf8());
        if (read) {
            QVERIFY2(*read == content, context.constData());
            continue;
        }
        QVERIFY2(read.error().contains(u"\"a.png\""_s), context.constData());
        QVERIFY2(read.error().contains(qt_error_string(error)), context.constData());
    }
}

void DiskFaultsTest::outOfRoom_costsNoPicture_data()
{
    QTest::addColumn<qsizetype>("before");
    QTest::addColumn<qsizetype>("after");
    const auto row = [](const char *name, qsizetype before, qsizetype after) {
        QTest::newRow(name) << before << after;
    };
    row("new", -1, 100'000);
    row("growing", 10'000, 100'000);
    row("from nothing", 0, 100'000);
    row("growing beyond, from beyond", 90'000, 100'000);
    row("shrinking beyond, from beyond", 90'000, 60'000);
}

void DiskFaultsTest::outOfRoom_costsNoPicture()
{
    QFETCH(const qsizetype, before);
    QFETCH(const qsizetype, after);
    if (before >= 0)
        put(u"a.png"_s, bytes(before, 'o'));
    const auto old = contents();
    const auto result = test::inChild([&] {
        const rlimit limit{50'000, 50'000};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &limit);
        return sentence(writeFile(url(u"a.png"_s), bytes(after, 'A')));
    });
    QVERIFY(contents() == old);
    QCOMPARE(result.answer, u"Could not write \"a.png\": %1."_s.arg(qt_error_string(EFBIG)));
}

void DiskFaultsTest::interruption_isNoFailure_data()
{
    QTest::addColumn<bool>("existing");
    QTest::addColumn<Call>("call");
    for (const Call call : {Call::lock, Call::read, Call::write, Call::clone, Call::ftruncate,
                            Call::fsync, Call::close})
        QTest::addRow("existing, %s", faults::name(call)) << true << call;
    for (const Call call : {Call::write, Call::fsync, Call::close})
        QTest::addRow("new, %s", faults::name(call)) << false << call;
}

void DiskFaultsTest::interruption_isNoFailure()
{
    QFETCH(const bool, existing);
    QFETCH(const Call, call);
    if (existing)
        put(u"a.png"_s, bytes(100, 'o'));
    arm({.call = call, .nth = 1, .error = EINTR});
    const auto written = writeFile(url(u"a.png"_s), bytes(200, 'n'));
    QCOMPARE(faults::disarm(), 1);
    QCOMPARE(sentence(written), u"no error"_s);
    QCOMPARE(contents()[u"a.png"_s], bytes(200, 'n'));

    arm({.call = call, .nth = 1, .error = EINTR});
    QCOMPARE(readFile(url(u"a.png"_s)).value_or("none"), bytes(200, 'n'));
}

void DiskFaultsTest::unrestoredPicture_isBesideTheFile()
{
    put(u"a.png"_s, bytes(100, 'o'));
    arm({.call = Call::write, .nth = 2, .error = EIO, .how = How::dying}); // 1 is the copy's
    const auto written = writeFile(url(u"a.png"_s), bytes(100, 'A'));
    faults::disarm();
    QCOMPARE(sentence(written),
             u"Could not write \"a.png\": %1, and the file is damaged; its "
             "original is in \"a.png.pixpress-old\"."_s.arg(qt_error_string(EIO)));
    QVERIFY(contents()[u"a.png"_s] != bytes(100, 'o')); // it is so
    QCOMPARE(contents()[copyName], bytes(100, 'o'));
}

void DiskFaultsTest::untouchedPicture_isNotSaidToBeLost_data()
{
    QTest::addColumn<int>("nth");
    QTest::addColumn<qsizetype>("after");
    for (const qsizetype after : {50, 100, 200}) {
        for (const int nth : {1, 2}) // of the copy and of the file
            QTest::addRow("write %d, %d bytes", nth, int(after)) << nth << after;
    }
}

// A disk that refuses everything before the file is touched has changed nothing, its time neither.
void DiskFaultsTest::untouchedPicture_isNotSaidToBeLost()
{
    QFETCH(const int, nth);
    QFETCH(const qsizetype, after);
    put(u"a.png"_s, bytes(100, 'o'));
    const timespec longAgo[] = {{1000, 5}, {2000, 6}};
    QCOMPARE(utimensat(AT_FDCWD, qPrintable(m_folder->filePath(u"a.png"_s)), longAgo, 0), 0);
    arm({.call = Call::write, .nth = nth, .error = EIO, .how = How::always});
    const auto written = writeFile(url(u"a.png"_s), bytes(after, 'A'));
    faults::disarm();
    QCOMPARE(sentence(written), u"Could not write \"a.png\": %1."_s.arg(qt_error_string(EIO)));
    const auto left = contents();
    QCOMPARE(left.keys(), QStringList(u"a.png"_s));
    QCOMPARE(left[u"a.png"_s], bytes(100, 'o'));
    struct stat status{};
    QCOMPARE(stat(qPrintable(m_folder->filePath(u"a.png"_s)), &status), 0);
    QVERIFY(status.st_mtim.tv_sec == 2000 && status.st_mtim.tv_nsec == 6);
}

void DiskFaultsTest::fault_reachesAProgramThatPreloadsIt()
{
    Dl_info library{};
    const auto arm = &faults::arm;
    QVERIFY(dladdr(reinterpret_cast<const void *>(arm), &library) != 0);
    put(u"in"_s, "content");

    QProcess copying;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LD_PRELOAD"_s, QString::fromLocal8Bit(library.dli_fname));
    environment.insert(u"PIXPRESS_FAULT"_s,
                       u"write 1 %1 once %2"_s.arg(ENOSPC).arg(m_folder->path()));
    copying.setProcessEnvironment(environment);
    copying.start(
        u"dd"_s, {u"if="_s + m_folder->filePath(u"in"_s), u"of="_s + m_folder->filePath(u"out"_s)});
    QVERIFY(copying.waitForFinished());
    QVERIFY(copying.exitStatus() == QProcess::NormalExit && copying.exitCode() != 0);
    QVERIFY(copying.readAllStandardError().contains("No space left on device"));
}

void DiskFaultsTest::fault_leavesOtherFoldersAlone()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"one"_s) && QDir(m_folder->path()).mkdir(u"one more"_s));
    faults::arm({.call = Call::write, .nth = 1, .error = EIO, .how = How::always},
                qPrintable(m_folder->filePath(u"one"_s)));
    QCOMPARE(sentence(writeFile(url(u"one more/a.png"_s), "content")), u"no error"_s);
    QVERIFY(!writeFile(url(u"one/a.png"_s), "content"));
    QCOMPARE(faults::disarm(), 1);
}

QTEST_GUILESS_MAIN(DiskFaultsTest)
#include "tst_diskfaults.moc"
