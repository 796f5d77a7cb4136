// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/longrun.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <array>
#include <linux/capability.h>
#include <malloc.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
constexpr int usualTasks = 500;
#else
constexpr bool sanitized = false;
constexpr int usualTasks = 2000;
#endif

/// While this lives, a read-only folder is read-only on this thread, for root as well.
class BoundByPermissions
{
public:
    BoundByPermissions() { override(false); }
    ~BoundByPermissions() { override(true); }
    BoundByPermissions(const BoundByPermissions &) = delete;
    BoundByPermissions &operator=(const BoundByPermissions &) = delete;

private:
    static void override(bool allowed)
    {
        __user_cap_header_struct head{.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
        std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> sets{};
        syscall(SYS_capget, &head, sets.data());
        const quint32 bit = 1U << CAP_DAC_OVERRIDE;
        sets[0].effective =
            allowed ? sets[0].effective | (sets[0].permitted & bit) : sets[0].effective & ~bit;
        syscall(SYS_capset, &head, sets.data());
    }
};

/// Bytes of memory that the process has in use, without what malloc keeps for later.
qint64 residentMemory()
{
    malloc_trim(0);
    QFile file(u"/proc/self/statm"_s);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return file.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

qsizetype openFiles()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System).size();
}

/// A number from the environment, or else this one.
quint32 setting(const char *name, quint32 otherwise)
{
    bool valid = false;
    const uint value = qEnvironmentVariable(name).toUInt(&valid);
    return valid ? value : otherwise;
}

} // namespace

/// Thousands of tasks on one queue, a tenth of which fail, with all that a user does meanwhile.
/// PIXPRESS_LONG=10000 in the environment makes it that many, PIXPRESS_SEED repeats one.
class LongRunTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void manyTasks_leaveNothingUndoneAndNothingBehind();
};

void LongRunTest::manyTasks_leaveNothingUndoneAndNothingBehind()
{
    const auto tasks = static_cast<int>(setting("PIXPRESS_LONG", usualTasks));
    const quint32 seed = setting("PIXPRESS_SEED", QRandomGenerator::global()->generate());
    qInfo("PIXPRESS_SEED=%u PIXPRESS_LONG=%d", seed, tasks);
    QElapsedTimer time;
    time.start();
    const qsizetype filesBefore = openFiles();
    {
        const BoundByPermissions user;
        LongRun run(seed, tasks);
        run.runUntil(tasks / 10);
        const qint64 memoryAtFirst = residentMemory();
        const qsizetype listedAtFirst = run.tasksListed();

        run.runUntil(tasks);
        run.retryMistaken();
        const qint64 growth = residentMemory() - memoryAtFirst;
        const qsizetype listed = run.tasksListed() - listedAtFirst;

        if (run.complaints.isEmpty()) // else it was broken off
            run.checkAll();
        qInfo("%.1f s; %d completed, %d retries, %d clears (%d while something ran) of %d tasks, "
              "%d tasks mistaken for others, %d connections refused",
              static_cast<double>(time.elapsed()) / 1000, run.completed, run.retries, run.clears,
              run.clearsWhileRunning, run.cleared, run.mistaken, run.connectionsRefused());
        qInfo(
            "resident memory %.1f MB after the first tenth, then %+.2f MB with %+lld tasks listed",
            static_cast<double>(memoryAtFirst) / 1e6, static_cast<double>(growth) / 1e6,
            static_cast<long long>(listed));
        for (const auto &[kind, count] : run.failures.asKeyValueRange())
            qInfo("%5d  %s", count, qPrintable(kind));
        QCOMPARE(run.complaints.join(u'\n'), QString());
        if (tasks >= 1000) // then each has its turn, several times
            QCOMPARE(run.failures.size() - run.failures.contains(u"dropped before the request"_s),
                     faultCount - firstFault);
        if (!sanitized) {
            // A task that is listed costs its names, options and result; one that is not costs
            // nothing but the path of its output, which this test remembers. The rest is for what
            // malloc cannot give back. Keeping an output of each task would be far more.
            const qint64 bound =
                3'000'000 + 2000 * std::max<qint64>(listed, 0) + 300 * (tasks - tasks / 10);
            QVERIFY2(growth < bound, qPrintable(u"%1 of %2 bytes"_s.arg(growth).arg(bound)));
        }
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(openFiles(), filesBefore);
}

QTEST_GUILESS_MAIN(LongRunTest)
#include "tst_longrun.moc"
