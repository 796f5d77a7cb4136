// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"
#include "service.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QTest>

#include <csignal>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// Closing the window ends the program, whatever it is at: in order, and with nothing left over.
class ClosingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void uploads_areGivenUp();
    void compressing_leavesWholeFilesOnly_data();
    void compressing_leavesWholeFilesOnly();
    void openSettings_doNotKeepIt();
    void openFilePanel_doesNotKeepIt();

private:
    void start(const QString &executable, const QStringList &arguments);
    void close();
    QSet<qint64> processes() const; ///< Of this test's home.

    std::unique_ptr<Desktop> m_desktop;
    QSet<qint64> m_before;
    std::unique_ptr<Program> m_program;
};

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void ClosingTest::init()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(m_desktop->start());
    m_before = processes();
    QVERIFY(!m_before.isEmpty());
}

void ClosingTest::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

QSet<qint64> ClosingTest::processes() const
{
    const QByteArray home = "HOME=" + m_desktop->environment().value(u"HOME"_s).toLocal8Bit();
    QSet<qint64> ids;
    for (const QString &id : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs)) {
        if (contentOf(u"/proc/%1/environ"_s.arg(id)).split('\0').contains(home))
            ids.insert(id.toLongLong());
    }
    return ids;
}

void ClosingTest::start(const QString &executable, const QStringList &arguments)
{
    m_program =
        std::make_unique<Program>(*m_desktop, executable, Invocation{.arguments = arguments});
    QVERIFY(m_program->isInFront());
    QVERIFY(processes().contains(m_program->processId()));
}

void ClosingTest::close()
{
    m_desktop->display().close(m_program->window());
    QCOMPARE(m_program->exitStatus(), 0);
    QCOMPARE(m_program->errors(), "");
    QCOMPARE(processes(), m_before);
}

void ClosingTest::uploads_areGivenUp()
{
    Service service;
    service.hold();
    m_desktop->store(u"Pixpress"_s,
                     {{u"pixpress_api_key"_s, QString::fromLatin1(service.goodKey)}});
    QStringList names;
    QStringList arguments{service.address()};
    for (int i = 0; i < 5; ++i) {
        names.append(u"%1.png"_s.arg(i));
        arguments.append(m_desktop->file(names.last(), "bytes of a picture"));
    }
    start(QStringLiteral(PIXPRESS_AT), arguments);
    QTRY_COMPARE_WITH_TIMEOUT(service.uploads().size(), 1, patience);
    close();
    QCOMPARE(m_desktop->fileNames(), names);
}

void ClosingTest::compressing_leavesWholeFilesOnly_data()
{
    QTest::addColumn<int>("signal");
    QTest::newRow("closed window") << 0;
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
    QTest::newRow("SIGINT") << SIGINT;
}

void ClosingTest::compressing_leavesWholeFilesOnly()
{
    QFETCH(const int, signal);
    QHash<QString, QByteArray> sources;
    QStringList arguments;
    for (int i = 0; i < 12; ++i) {
        const QString name = u"%1.jpg"_s.arg(i);
        arguments.append(m_desktop->sample(u"lake at dusk.jpg"_s, name));
        sources.insert(name, contentOf(arguments.last()));
    }
    start(QStringLiteral(PIXPRESS_OFFLINE), arguments);
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop->fileNames().size() > sources.size(), patience);
    if (signal == 0) {
        close();
    } else { // as when a person logs out
        ::kill(static_cast<pid_t>(m_program->processId()), signal);
        QCOMPARE(m_program->exitStatus(), 0);
        QCOMPARE(m_program->errors(), "");
        QTRY_COMPARE_WITH_TIMEOUT(processes(), m_before, patience);
    }
    const QStringList names = m_desktop->fileNames();
    for (const auto &[name, content] : sources.asKeyValueRange())
        QVERIFY(contentOf(m_desktop->path(name)) == content);
    QByteArray whole;
    for (const QString &name : names.filter(u"-pixpress"_s)) {
        const QByteArray content = contentOf(m_desktop->path(name));
        if (whole.isEmpty())
            whole = content;
        QVERIFY(content.endsWith("\xff\xd9")); // the end of a JPEG
        QVERIFY(content == whole);
    }
    QCOMPARE(names.filter(QRegularExpression(u"^\\d+(-pixpress)?\\.jpg$"_s)), names);
}

void ClosingTest::openSettings_doNotKeepIt()
{
    start(QStringLiteral(PIXPRESS_OFFLINE), {});
    const QImage before = m_program->picture();
    m_desktop->press({u"ctrl+comma"_s});
    QTRY_VERIFY_WITH_TIMEOUT(m_program->picture() != before, patience);
    close();
}

void ClosingTest::openFilePanel_doesNotKeepIt()
{
    start(QStringLiteral(PIXPRESS_OFFLINE), {});
    const QImage before = m_program->picture();
    m_desktop->press({u"ctrl+o"_s});
    QTRY_VERIFY_WITH_TIMEOUT(m_program->picture() != before, patience);
    close();
}

QTEST_GUILESS_MAIN(ClosingTest)
#include "tst_closing.moc"
