// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"

#include "pipeline/folder.h"
#include "pipeline/tree.h"
#include "support/child.h"
#include "support/faults/faults.h"

#include <QDir>
#include <QTest>

#include <unistd.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;
using faults::Call;

/// A process that is killed before, in the midst of or after any call on the disk while it saves.
class KilledSaveTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { faults::limit({}); }

    void newName_isWholeOrMissing_data();
    void newName_isWholeOrMissing();
    void overwriting_leavesTheFileOrItsCopyWhole_data();
    void overwriting_leavesTheFileOrItsCopyWhole();

private:
    /// What in/a.png is.
    enum class Kind { plain, hardLink, symbolicLink };

    void prepare();
    QString path(const QString &name) const { return m_folder->path() + u'/' + name; }

    /// Saves in a process that meets such an end; returns whether it has met it.
    bool killWhileSaving(const faults::Fault &fault, const CompressionOptions &options,
                         const QByteArray &output);
    /// Calls `check` with the fault's name and what is in the folder, after each way to be killed.
    template <typename Check>
    void forEachKill(const CompressionOptions &options, const QByteArray &output, Check check);

    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_source = bytes(50'000, 1);
    Kind m_kind = Kind::plain;
};

void KilledSaveTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(quickTemplate());
    QVERIFY(m_folder->isValid());
    m_kind = Kind::plain;
    prepare();
}

void KilledSaveTest::prepare()
{
    QDir(path(u"in"_s)).removeRecursively();
    QDir(path(u"out"_s)).removeRecursively();
    QVERIFY(QDir().mkdir(path(u"in"_s)) && QDir().mkdir(path(u"out"_s)));
    QFile file(path(u"in/a.png"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(m_source), m_source.size());
    file.close();
    if (m_kind == Kind::hardLink)
        QCOMPARE(::link(qPrintable(path(u"in/a.png"_s)), qPrintable(path(u"out/other.png"_s))), 0);
    if (m_kind == Kind::symbolicLink) {
        QVERIFY(QFile::rename(path(u"in/a.png"_s), path(u"out/other.png"_s)));
        QVERIFY(QFile::link(u"../out/other.png"_s, path(u"in/a.png"_s)));
    }
}

bool KilledSaveTest::killWhileSaving(const faults::Fault &fault, const CompressionOptions &options,
                                     const QByteArray &output)
{
    const auto result = inChild([&] {
        faults::arm(fault, qPrintable(m_folder->path()));
        const QUrl source = QUrl::fromLocalFile(path(u"in/a.png"_s));
        const auto read = readSource(source, options);
        return read ? sentence(writeOutput(source, options, output, read->digest)) : sentence(read);
    });
    if (result.signal == 0 && result.answer != u"no error"_s)
        qFatal("%s", qPrintable(result.answer));
    return result.signal == SIGKILL;
}

template <typename Check>
void KilledSaveTest::forEachKill(const CompressionOptions &options, const QByteArray &output,
                                 Check check)
{
    int kills = 0;
    for (const Call call : faults::allCalls) {
        for (const faults::How how : faults::deadlyWays) {
            for (int nth = 1;; ++nth) {
                prepare();
                const Tree before = treeOf(m_folder->path());
                if (!killWhileSaving({.call = call, .nth = nth, .how = how}, options, output))
                    break;
                ++kills;
                check(u"%1 %2 %3"_s.arg(QLatin1StringView(faults::name(call)))
                          .arg(nth)
                          .arg(QLatin1StringView(faults::name(how))),
                      before, treeOf(m_folder->path()));
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }
    QVERIFY(kills >= 10);
    qInfo("Killed at %d moments.", kills);
}

void KilledSaveTest::newName_isWholeOrMissing_data()
{
    QTest::addColumn<OutputDestination>("destination");
    QTest::addColumn<bool>("converts");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *tag, OutputDestination destination, bool converts,
                        const QString &name) {
        QTest::newRow(tag) << destination << converts << name;
    };
    row("alongside", OutputDestination::alongside, false, u"in/a-pixpress.png"_s);
    row("alongside, converted", OutputDestination::alongside, true, u"in/a-pixpress.webp"_s);
    row("custom folder", OutputDestination::customFolder, false, u"out/a.png"_s);
    row("custom folder, converted", OutputDestination::customFolder, true, u"out/a.webp"_s);
    row("overwriting, converted", OutputDestination::overwrite, true, u"in/a.webp"_s);
}

namespace {

/// What file systems can do: all that is needed, or ever less.
constexpr faults::Abilities levels[] = {
    {}, {.unnamedFiles = false}, {.unnamedFiles = false, .exclusiveRename = false}};

/// Takes away the hidden files in which something was being made.
void removeParts(Tree &tree)
{
    tree.removeIf([](auto entry) { return entry.key().contains(u"/.pixpress-part-"); });
}

} // namespace

void KilledSaveTest::newName_isWholeOrMissing()
{
    QFETCH(const OutputDestination, destination);
    QFETCH(const bool, converts);
    QFETCH(const QString, name);
    const CompressionOptions options{.convertEnabled = converts,
                                     .convertFormat = ImageFormat::webp,
                                     .outputDestination = destination,
                                     .customFolderURL = QUrl::fromLocalFile(path(u"out"_s))};
    const QByteArray output = bytes(30'000, 2);
    for (const faults::Abilities &abilities : levels) {
        faults::limit(abilities);
        int whole = 0;
        forEachKill(options, output, [&](const QString &fault, const Tree &before, Tree after) {
            if (!abilities.unnamedFiles)
                removeParts(after);
            if (after.contains(name)) {
                ++whole;
                QVERIFY2(after.take(name).content == output, qPrintable(fault));
            }
            QVERIFY2(after == before, qPrintable(fault + u": "_s + difference(before, after)));
        });
        QVERIFY(whole > 0); // when it is killed later
    }
}

void KilledSaveTest::overwriting_leavesTheFileOrItsCopyWhole_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<qsizetype>("size");
    QTest::addColumn<int>("level");
    for (const auto &[name, kind] : {std::pair("plain file", Kind::plain),
                                     {"hard link", Kind::hardLink},
                                     {"symbolic link", Kind::symbolicLink}}) {
        for (int level = 0; level < 3; ++level) {
            QTest::addRow("smaller, %s, %d", name, level)
                << int(kind) << qsizetype(30'000) << level;
            QTest::addRow("larger, %s, %d", name, level) << int(kind) << qsizetype(80'000) << level;
        }
    }
}

void KilledSaveTest::overwriting_leavesTheFileOrItsCopyWhole()
{
    QFETCH(const int, kind);
    QFETCH(const qsizetype, size);
    QFETCH(const int, level);
    m_kind = Kind(kind);
    faults::limit(levels[level]);
    const QStringList names = m_kind == Kind::plain ? QStringList{u"in/a.png"_s}
                              : m_kind == Kind::hardLink
                                  ? QStringList{u"in/a.png"_s, u"out/other.png"_s}
                                  : QStringList{u"out/other.png"_s};
    const QString copyName = names.first() + u".pixpress-old"_s;
    const QByteArray output = bytes(size, 2);
    int torn = 0;
    int finished = 0;
    forEachKill(
        {.outputDestination = OutputDestination::overwrite}, output,
        [&](const QString &fault, const Tree &before, Tree after) {
            const QByteArray content = after[names.first()].content;
            for (const QString &name : names)
                QCOMPARE(std::exchange(after[name].content, m_source), content);
            const bool isWhole = content == m_source || content == output;
            torn += !isWhole;
            finished += content == output;
            if (level > 0)
                removeParts(after);
            if (!isWhole || after.contains(copyName)) {
                QVERIFY2(after.take(copyName).content == m_source, qPrintable(fault));
                // The next task says so, and touches neither.
                const auto next = readSource(QUrl::fromLocalFile(path(u"in/a.png"_s)),
                                             {.outputDestination = OutputDestination::overwrite});
                QVERIFY(!next && next.error().contains(QFileInfo(copyName).fileName()));
            }
            QVERIFY2(after == before, qPrintable(fault + u": "_s + difference(before, after)));
        });
    QVERIFY(torn > 0); // Else the copy would be for nothing.
    QVERIFY(finished > 0);
}

QTEST_GUILESS_MAIN(KilledSaveTest)
#include "tst_killedsave.moc"
