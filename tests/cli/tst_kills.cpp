// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pictures.h"

#include "cli/program.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>
#include <csignal>

using namespace pixpress;
using namespace pixpress::test;
using namespace pixpress::testing;
using namespace Qt::StringLiterals;

/// The whole program, killed while it is at a folder of pictures: at no planned moment, so that
/// those are met too that nobody has thought of.
class KillsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void pictures_areThereAndCopiesWhole_data();
    void pictures_areThereAndCopiesWhole();
    void overwrittenPictures_areWholeOrBesideTheirCopies_data();
    void overwrittenPictures_areWholeOrBesideTheirCopies();

private:
    QMap<QString, QByteArray> m_pictures; ///< Content by name.
};

namespace {

using Files = QMap<QString, QByteArray>;

Files filesOf(const QString &folder)
{
    Files files;
    for (const QFileInfo &info :
         QDir(folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name)) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s cannot be read.", qUtf8Printable(info.filePath()));
        files[info.fileName()] = file.readAll();
    }
    return files;
}

/// What the program has written: into a folder, or beside the pictures.
Files copiesOf(const Program &program, const Files &pictures, const QString &folder)
{
    Files copies = filesOf(program.path(folder));
    copies.removeIf(
        [&](const auto &file) { return folder.isEmpty() && pictures.contains(file.key()); });
    return copies;
}

} // namespace

void KillsTest::initTestCase()
{
    VIPS_INIT("test");
    for (int number = 0; number < 40; ++number)
        m_pictures[u"%1.png"_s.arg(number)] = saved(photo(40 + number, 30), ImageFormat::png);
}

void KillsTest::pictures_areThereAndCopiesWhole_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("alongside") << QString();
    QTest::newRow("into a folder") << u"out"_s;
}

void KillsTest::pictures_areThereAndCopiesWhole()
{
    QFETCH(const QString, folder);
    QStringList arguments = m_pictures.keys();
    if (!folder.isEmpty())
        arguments = QStringList{u"--output"_s, folder} + arguments;
    const auto prepared = [&] {
        auto program = std::make_unique<Program>();
        for (const auto &[name, content] : m_pictures.asKeyValueRange()) {
            QFile file(program->path(name));
            if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
                qFatal("%s cannot be written.", qUtf8Printable(name));
        }
        QDir().mkpath(program->path(folder));
        return program;
    };

    // Undisturbed: how long it takes, and what becomes of each.
    const auto undisturbed = prepared();
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(undisturbed->run(arguments).status, 0);
    auto duration = static_cast<int>(timer.elapsed());
    const Files whole = copiesOf(*undisturbed, m_pictures, folder);
    QCOMPARE(whole.size(), m_pictures.size());

    constexpr int wanted = 6;
    int killedAtWork = 0;
    for (int round = 0; round < 100 && killedAtWork < wanted; ++round) {
        const auto program = prepared();
        QProcess process;
        program->prepare(process);
        const int moment = QRandomGenerator::global()->bounded(duration);
        process.start(Program::file(), arguments);
        QVERIFY(process.waitForStarted());
        if (!process.waitForFinished(moment)) {
            process.kill();
            QVERIFY(process.waitForFinished());
        }

        const QString when = u" after %1 ms"_s.arg(moment);
        const Files copies = copiesOf(*program, m_pictures, folder);
        for (const auto &[name, content] : copies.asKeyValueRange())
            QVERIFY2(whole.value(name) == content, qPrintable(name + when));
        for (const auto &[name, content] : m_pictures.asKeyValueRange())
            QVERIFY2(program->content(name) == content, qPrintable(name + when));
        if (!copies.isEmpty() && copies.size() < whole.size())
            ++killedAtWork;

        // Started again, it is hindered by nothing that was left.
        timer.start();
        QCOMPARE(program->run(arguments).status, 0);
        duration = std::min(duration, static_cast<int>(timer.elapsed())); // the first was slowest
        QCOMPARE(copiesOf(*program, m_pictures, folder).size(), copies.size() + whole.size());
    }
    QCOMPARE(killedAtWork, wanted); // with a part of the copies made
}

void KillsTest::overwrittenPictures_areWholeOrBesideTheirCopies_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGKILL") << SIGKILL;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("SIGINT") << SIGINT;
}

void KillsTest::overwrittenPictures_areWholeOrBesideTheirCopies()
{
    QFETCH(const int, signal);
    const QStringList arguments = QStringList{u"--overwrite"_s} + m_pictures.keys();
    const auto prepared = [&] {
        auto program = std::make_unique<Program>();
        for (const auto &[name, content] : m_pictures.asKeyValueRange()) {
            QFile file(program->path(name));
            if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
                qFatal("%s cannot be written.", qUtf8Printable(name));
        }
        return program;
    };
    const auto undisturbed = prepared();
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(undisturbed->run(arguments).status, 0);
    const auto duration = static_cast<int>(timer.elapsed());
    const Files whole = filesOf(undisturbed->path({}));
    QCOMPARE(whole.size(), m_pictures.size()); // No copy has been left.

    constexpr int wanted = 4;
    int atWork = 0;
    for (int round = 0; round < 100 && atWork < wanted; ++round) {
        const auto program = prepared();
        QProcess process;
        program->prepare(process);
        const int moment = QRandomGenerator::global()->bounded(duration);
        process.start(Program::file(), arguments);
        QVERIFY(process.waitForStarted());
        if (!process.waitForFinished(moment)) {
            ::kill(static_cast<pid_t>(process.processId()), signal);
            QVERIFY(process.waitForFinished());
        }

        Files left = filesOf(program->path({}));
        int done = 0;
        for (const auto &[name, content] : m_pictures.asKeyValueRange()) {
            const QByteArray now = left.take(name);
            done += now == whole[name];
            const QByteArray copy = left.take(name + u".pixpress-old"_s);
            const QByteArray when = name.toUtf8() + " after " + QByteArray::number(moment) + " ms";
            QVERIFY2(now == content || now == whole[name] || copy == content, when.constData());
            if (signal != SIGKILL) // which lets no write come to its end
                QVERIFY2(copy.isEmpty() && (now == content || now == whole[name]),
                         when.constData());
        }
        QVERIFY(left.isEmpty());
        atWork += done > 0 && done < m_pictures.size();
    }
    QCOMPARE(atWork, wanted); // with a part of the pictures overwritten
}

QTEST_GUILESS_MAIN(KillsTest)
#include "tst_kills.moc"
