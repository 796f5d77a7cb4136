// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"
#include "pipeline/settingsfile.h"

#include "pipeline/diskimage.h"
#include "pipeline/folder.h"
#include "pipeline/tree.h"

#include <QDir>
#include <QSet>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;
using faults::Call;
using faults::How;

namespace {

/// What file systems can do: all that is needed, or ever less.
constexpr faults::Abilities levels[] = {
    {.clones = false},
    {.unnamedFiles = false, .clones = false},
    {.unnamedFiles = false, .exclusiveRename = false, .clones = false},
};

const QString copySuffix = u".pixpress-old"_s;

} // namespace

/// The power fails at any moment of a save, and the disk has done any part of what was not synced.
class PowerCutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void cleanupTestCase() { qInfo("%lld states of the disk.", static_cast<long long>(m_states)); }

    void unsyncedWrite_canBeTornInAnyWay();
    void overwriting_leavesTheFileOrItsCopyWhole_data();
    void overwriting_leavesTheFileOrItsCopyWhole();
    void failedOverwriting_leavesTheFileOrItsCopyWhole_data();
    void failedOverwriting_leavesTheFileOrItsCopyWhole();
    void newFile_isWholeOrMissing_data();
    void newFile_isWholeOrMissing();
    void settings_areTheOldOrTheNew_data();
    void settings_areTheOldOrTheNew();

private:
    QString path(const QString &name = {}) const { return m_folder->path() + u'/' + name; }
    void put(const QString &name, const QByteArray &content) const;

    /// Calls `check` with every state that the disk can be in while `work` is done, and with
    /// whether it was done by then.
    template <typename Work, typename Check>
    void cutPower(Work work, Check check);

    std::unique_ptr<QTemporaryDir> m_folder;
    qint64 m_states = 0;
};

void PowerCutTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(quickTemplate());
    QVERIFY(m_folder->isValid());
}

void PowerCutTest::cleanup()
{
    faults::disarm();
    faults::limit({});
}

void PowerCutTest::put(const QString &name, const QByteArray &content) const
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

template <typename Work, typename Check>
void PowerCutTest::cutPower(Work work, Check check)
{
    DiskImage image(m_folder->path());
    faults::record(qPrintable(m_folder->path()));
    work();
    const std::vector<faults::Step> steps = faults::recorded();
    for (size_t done = 0; done <= steps.size(); ++done) {
        image.forEachState([&](const DiskImage::Files &files) {
            ++m_states;
            check(files, done == steps.size());
        });
        if (QTest::currentTestFailed()) {
            qWarning("after step %zu of %zu", done, steps.size());
            return;
        }
        if (done < steps.size())
            image.apply(steps[done]);
    }
    // The image has followed: what it shows without a loss is what is there.
    bool isThere = false;
    DiskImage::Files real;
    for (const auto &[name, entry] : treeOf(m_folder->path()).asKeyValueRange()) {
        if (S_ISREG(entry.mode))
            real[name] = entry.content;
    }
    image.forEachState([&](const DiskImage::Files &files) { isThere |= files == real; });
    QVERIFY(isThere);
}

// Guards the others: a save without any care is torn in this picture of a disk.
void PowerCutTest::unsyncedWrite_canBeTornInAnyWay()
{
    put(u"a.png"_s, bytes(1200, 1));
    QSet<QByteArray> found;
    cutPower(
        [this] {
            const int file = ::open(qPrintable(path(u"a.png"_s)), O_RDWR | O_CLOEXEC);
            const QByteArray fresh = bytes(900, 2);
            QCOMPARE(pwrite(file, fresh.constData(), 900, 0), 900);
            QCOMPARE(ftruncate(file, 900), 0);
            ::close(file);
        },
        [&](const DiskImage::Files &files, bool) { found.insert(files[u"a.png"_s]); });
    const QByteArray old = bytes(1200, 1);
    const QByteArray fresh = bytes(900, 2);
    for (const QByteArray &content :
         {old, fresh, fresh.first(512) + old.sliced(512), old.first(512) + fresh.sliced(512),
          old.first(900), fresh + old.sliced(900)})
        QVERIFY(found.contains(content));
    QCOMPARE(found.size(), 8);
}

void PowerCutTest::overwriting_leavesTheFileOrItsCopyWhole_data()
{
    QTest::addColumn<qsizetype>("before");
    QTest::addColumn<qsizetype>("after");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<int>("level");
    constexpr std::pair<int, int> sizes[] = {{1700, 1100}, {1100, 1700}, {1500, 1500},
                                             {0, 900},     {900, 0},     {3000, 2500}};
    for (const auto &[before, after] : sizes) {
        for (const char *kind : {"plain", "hard link", "symbolic link"}) {
            for (int level = 0; level < int(std::size(levels)); ++level)
                QTest::addRow("%d to %d bytes, %s, %d", before, after, kind, level)
                    << qsizetype(before) << qsizetype(after) << QString::fromLatin1(kind) << level;
        }
    }
}

void PowerCutTest::overwriting_leavesTheFileOrItsCopyWhole()
{
    QFETCH(const qsizetype, before);
    QFETCH(const qsizetype, after);
    QFETCH(const QString, kind);
    QFETCH(const int, level);
    const QByteArray old = bytes(before, 1);
    const QByteArray fresh = bytes(after, 2);
    const bool isLinked = kind == u"symbolic link"_s;
    const QString real = isLinked ? u"elsewhere/real.png"_s : u"in/a.png"_s;
    QVERIFY(QDir().mkpath(path(u"in"_s)) && QDir().mkpath(path(u"elsewhere"_s)));
    put(real, old);
    if (isLinked)
        QVERIFY(QFile::link(path(real), path(u"in/a.png"_s)));
    if (kind == u"hard link"_s)
        QCOMPARE(link(qPrintable(path(real)), qPrintable(path(u"elsewhere/b.png"_s))), 0);

    faults::limit(levels[level]);
    const QUrl source = QUrl::fromLocalFile(path(u"in/a.png"_s));
    const CompressionOptions options{.outputDestination = OutputDestination::overwrite};
    bool wasTorn = false;
    cutPower(
        [&] {
            const auto read = readSource(source, options);
            QVERIFY(read);
            QCOMPARE(sentence(writeOutput(source, options, fresh, read->digest)), u"no error"_s);
        },
        [&](const DiskImage::Files &files, bool isDone) {
            const QByteArray content = files.value(real, "none");
            wasTorn |= content != old && content != fresh;
            QVERIFY(content == old || content == fresh || files.value(real + copySuffix) == old);
            if (files.contains(real + copySuffix))
                QVERIFY(files[real + copySuffix] == old);
            if (isDone) { // and on the disk
                QVERIFY(content == fresh);
                QVERIFY(!files.contains(real + copySuffix));
            }
        });
    QVERIFY(wasTorn || before == 0 || after == 0); // Else the copy would be for nothing.
}

void PowerCutTest::failedOverwriting_leavesTheFileOrItsCopyWhole_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<How>("how");
    QTest::addColumn<int>("level");
    for (const Call call : faults::allCalls) {
        for (const How how : faults::allWays) {
            for (int level = 0; level < int(std::size(levels)); ++level)
                QTest::addRow("%s %s, %d", faults::name(call), faults::name(how), level)
                    << call << how << level;
        }
    }
}

// The disk fails first, and then the power.
void PowerCutTest::failedOverwriting_leavesTheFileOrItsCopyWhole()
{
    QFETCH(const Call, call);
    QFETCH(const How, how);
    QFETCH(const int, level);
    const QByteArray old = bytes(1700, 1);
    const QByteArray fresh = bytes(1100, 2);
    const CompressionOptions options{.outputDestination = OutputDestination::overwrite};
    for (int nth = 1, met = 1; met > 0; ++nth) {
        init();
        put(u"a.png"_s, old);
        faults::limit(levels[level]);
        const QUrl source = QUrl::fromLocalFile(path(u"a.png"_s));
        const auto read = readSource(source, options);
        QVERIFY(read);
        bool succeeded = false;
        bool isRestored = false;
        cutPower(
            [&] {
                faults::arm({.call = call, .nth = nth, .error = EIO, .how = how},
                            qPrintable(m_folder->path()));
                const auto written = writeOutput(source, options, fresh, read->digest);
                met = faults::disarm();
                succeeded = written.has_value();
                isRestored = !succeeded && !written.error().contains(copySuffix);
            },
            [&](const DiskImage::Files &files, bool isDone) {
                const QByteArray content = files.value(u"a.png"_s, "none");
                QVERIFY(content == old || content == fresh ||
                        files.value(u"a.png"_s + copySuffix) == old);
                if (isDone && succeeded)
                    QVERIFY(content == fresh);
                if (isDone && isRestored)
                    QVERIFY(content == old);
            });
        if (QTest::currentTestFailed()) {
            qWarning("call %d", nth);
            return;
        }
    }
}

void PowerCutTest::newFile_isWholeOrMissing_data()
{
    QTest::addColumn<OutputDestination>("destination");
    QTest::addColumn<qsizetype>("size");
    QTest::addColumn<int>("level");
    for (const OutputDestination destination : allCases<OutputDestination>()) {
        for (const int size : {1, 600, 2500}) {
            for (int level = 0; level < int(std::size(levels)); ++level)
                QTest::addRow("%s, %d bytes, %d", qPrintable(rawValue(destination)), size, level)
                    << destination << qsizetype(size) << level;
        }
    }
}

void PowerCutTest::newFile_isWholeOrMissing()
{
    QFETCH(const OutputDestination, destination);
    QFETCH(const qsizetype, size);
    QFETCH(const int, level);
    const QByteArray old = bytes(1200, 1);
    const QByteArray fresh = bytes(size, 2);
    put(u"in/a.png"_s, old);
    QVERIFY(QDir().mkdir(path(u"out"_s)));
    faults::limit(levels[level]);
    const CompressionOptions options{.convertEnabled = true,
                                     .convertFormat = ImageFormat::webp,
                                     .outputDestination = destination,
                                     .customFolderURL = QUrl::fromLocalFile(path(u"out"_s))};
    QString output;
    const auto work = [&] {
        const auto written = writeOutput(QUrl::fromLocalFile(path(u"in/a.png"_s)), options, fresh);
        QCOMPARE(sentence(written), u"no error"_s);
        output = written->toLocalFile().sliced(path().size());
    };
    cutPower(work, [&](DiskImage::Files files, bool isDone) {
        QVERIFY(files.take(u"in/a.png"_s) == old);
        QCOMPARE(files.contains(output), isDone || files.contains(output));
        if (files.contains(output))
            QVERIFY(files.take(output) == fresh);
        if (level > 0)
            files.removeIf([](auto file) { return file.key().contains(u".pixpress-part-"); });
        QVERIFY(files.isEmpty());
    });
}

void PowerCutTest::settings_areTheOldOrTheNew_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    constexpr std::pair<int, int> lengths[] = {
        {-1, 32}, {32, 32}, {32, 700}, {700, 32}, {700, 701}};
    for (const auto &[before, after] : lengths)
        QTest::addRow("key of %d, then of %d letters", before, after) << before << after;
}

void PowerCutTest::settings_areTheOldOrTheNew()
{
    QFETCH(const int, before);
    QFETCH(const int, after);
    const QString name = u"Pixpress.json"_s;
    const QJsonObject old = before < 0
                                ? QJsonObject()
                                : QJsonObject{{u"count"_s, 1}, {u"key"_s, QString(before, u'o')}};
    const QJsonObject change{{u"key"_s, QString(after, u'n')}};
    QJsonObject fresh = old;
    fresh[u"key"_s] = change[u"key"_s];
    if (before >= 0)
        QVERIFY(settingsfile::merge(path(name), old));
    QJsonObject last = fresh;
    last[u"count"_s] = 2;
    cutPower(
        [&] {
            QVERIFY(settingsfile::merge(path(name), change));
            QVERIFY(settingsfile::merge(path(name), {{u"count"_s, 2}}));
        },
        [&](const DiskImage::Files &files, bool isDone) {
            for (const QString &other : files.keys())
                QCOMPARE(other, name); // No key is anywhere else.
            const QTemporaryDir folder(quickTemplate());
            if (files.contains(name)) {
                QFile file(folder.filePath(name));
                QVERIFY(file.open(QIODevice::WriteOnly));
                QCOMPARE(file.write(files[name]), files[name].size());
            }
            const auto read = settingsfile::read(folder.filePath(name));
            QVERIFY(read);
            QVERIFY(*read == last || (!isDone && (*read == fresh || *read == old)));
            // and it can be used
            QVERIFY(settingsfile::merge(folder.filePath(name), {{u"later"_s, 1}}));
            QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList(name));
        });
}

QTEST_GUILESS_MAIN(PowerCutTest)
#include "tst_powercut.moc"
