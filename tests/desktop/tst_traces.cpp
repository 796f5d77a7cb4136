// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"
#include "service.h"

#include <QDir>
#include <QDirIterator>
#include <QTest>

#include <algorithm>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// What a session leaves on the disk: the pictures that were asked for, and the settings. Nowhere
/// else the name of a picture or of its folder.
class TracesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void offline_leavesNothing();
    void remote_leavesTheKeyAndTheCount();

private:
    void start(const QString &executable, const QStringList &arguments);
    /// Everything a person does with files, and with the window.
    void live();
    /// The files below the home that have one of these in them, or in their name.
    QStringList filesWith(const QByteArrayList &marks) const;
    QStringList traces() const;
    /// Fails when the running program shows one of these to others who look at its process.
    void verifyHidden(const QByteArrayList &marks) const;

    const QString m_mark = u"Ostsee4711"_s; ///< In each name and each folder's.
    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Program> m_program;
};

void TracesTest::init()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(m_desktop->start());
    QVERIFY(QDir(m_desktop->path({})).mkpath(u"../tmp"_s));
    // Where the panel begins.
    QVERIFY(QDir(m_desktop->path({})).mkpath(u"../Pictures"_s));
    m_desktop->sample(u"lighthouse.jpeg"_s, u"../Pictures/panel %1.jpeg"_s.arg(m_mark));
}

void TracesTest::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

void TracesTest::start(const QString &executable, const QStringList &arguments)
{
    m_program = std::make_unique<Program>(
        *m_desktop, executable,
        Invocation{.arguments = arguments,
                   .environment = {{u"TMPDIR"_s, m_desktop->path(u"../tmp"_s)}}});
    QVERIFY(m_program->isInFront());
}

void TracesTest::live()
{
    const auto file = [this](const char *name) {
        return u"%1 %2"_s.arg(QLatin1String(name), m_mark);
    };
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop->size(file("argument") + u"-pixpress.png"_s) > 0, patience);
    const QString dragged = m_desktop->sample(u"lake at dusk.jpg"_s, file("drag") + u".jpg"_s);
    QVERIFY(drag(*m_desktop, {dragged}, *m_program).contains(u"done copy"_s));
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop->size(file("drag") + u"-pixpress.jpg"_s) > 0, patience);

    QVERIFY(m_program->isInFront());
    const QImage withoutPanel = m_program->picture();
    m_desktop->press({u"ctrl+o"_s});
    QTRY_VERIFY_WITH_TIMEOUT(m_program->picture() != withoutPanel, patience);
    QVERIFY(m_program->isInFront());
    m_desktop->press({u"Down"_s, u"Return"_s});
    QTRY_VERIFY_WITH_TIMEOUT(
        m_desktop->size(u"../Pictures/panel %1-pixpress.jpeg"_s.arg(m_mark)) > 0, patience);

    m_desktop->resize(m_program->window(), {1000, 700});
    QTRY_COMPARE_WITH_TIMEOUT(m_program->area().size(), QSize(1000, 700), patience);
    m_desktop->display().close(m_program->window());
    QCOMPARE(m_program->exitStatus(), 0);
}

QStringList TracesTest::filesWith(const QByteArrayList &marks) const
{
    const QDir home(m_desktop->environment().value(u"HOME"_s));
    QStringList found;
    QDirIterator all(home.path(),
                     QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString path = home.relativeFilePath(all.next());
        QFile file(all.filePath());
        const QByteArray content = all.fileInfo().isFile() && file.open(QIODevice::ReadOnly)
                                       ? file.readAll()
                                       : QByteArray();
        const QByteArray both = path.toUtf8() + '\0' + content;
        if (std::ranges::any_of(marks, [&](const auto &mark) { return both.contains(mark); }))
            found.append(path);
    }
    return found;
}

QStringList TracesTest::traces() const
{
    const QByteArray utf16(reinterpret_cast<const char *>(m_mark.utf16()), m_mark.size() * 2);
    QStringList found = filesWith({m_mark.toUtf8(), utf16});
    found.removeIf([](const QString &path) {
        return path.startsWith(u"files/") || path.startsWith(u"Pictures/");
    });
    return found;
}

void TracesTest::verifyHidden(const QByteArrayList &marks) const
{
    for (const auto *shown : {"cmdline", "environ", "maps", "comm"}) {
        QFile file(u"/proc/%1/%2"_s.arg(m_program->processId()).arg(QLatin1String(shown)));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();
        QVERIFY(!content.isEmpty());
        for (const QByteArray &mark : marks)
            QVERIFY2(!content.contains(mark), shown);
    }
}

void TracesTest::offline_leavesNothing()
{
    start(QStringLiteral(PIXPRESS_OFFLINE),
          {m_desktop->sample(u"island map.png"_s, u"argument %1.png"_s.arg(m_mark))});
    live();
    QCOMPARE(traces(), QStringList());
    QVERIFY(!QFile::exists(m_desktop->settingsPath(u"Pixpress Offline"_s)));

    start(QStringLiteral(PIXPRESS_OFFLINE), {});
    QCOMPARE(m_program->area().size(), QSize(920, 620));
    QCOMPARE(greenPoints(m_program->picture()), 0); // the list is gone
}

void TracesTest::remote_leavesTheKeyAndTheCount()
{
    Service service;
    m_desktop->store(u"Pixpress"_s,
                     {{u"pixpress_api_key"_s, QString::fromLatin1(service.goodKey)}});
    start(QStringLiteral(PIXPRESS_AT),
          {service.address(),
           m_desktop->sample(u"island map.png"_s, u"argument %1.png"_s.arg(m_mark))});
    const QByteArrayList marks{service.goodKey, ("api:" + service.goodKey).toBase64().mid(6, 12)};
    verifyHidden(marks);
    live();
    QCOMPARE(traces(), QStringList());
    const QStringList withKey = filesWith(marks);
    QCOMPARE(withKey.size(), 1);
    QVERIFY2(withKey.first().endsWith(u"/Pixpress.json"), qPrintable(withKey.first()));
    for (const QByteArray &mark : marks)
        QVERIFY(!m_program->output().contains(mark) && !m_program->errors().contains(mark));
    QCOMPARE(
        m_desktop->settings(u"Pixpress"_s).keys(),
        QStringList({u"pixpress_api_key"_s, u"pixpress_quota_count"_s, u"pixpress_quota_month"_s}));
}

QTEST_GUILESS_MAIN(TracesTest)
#include "tst_traces.moc"
