// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"
#include "service.h"

#include <QDir>
#include <QDirIterator>
#include <QTest>

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

    void offline_leavesTheCountAlone();
    void remote_leavesTheKeyAndTheCount();

private:
    void start(const QString &executable, const QStringList &arguments);
    /// Everything a person does with files, and with the window.
    void live();
    QStringList traces() const;

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
    m_desktop->press({u"ctrl+o"_s});
    QVERIFY(m_program->isInFront());
    m_desktop->press({u"Down"_s, u"Return"_s});
    QTRY_VERIFY_WITH_TIMEOUT(
        m_desktop->size(u"../Pictures/panel %1-pixpress.jpeg"_s.arg(m_mark)) > 0, patience);

    m_desktop->resize(m_program->window(), {1000, 700});
    QTRY_COMPARE_WITH_TIMEOUT(m_program->area().size(), QSize(1000, 700), patience);
    m_desktop->display().close(m_program->window());
    QCOMPARE(m_program->exitStatus(), 0);
}

QStringList TracesTest::traces() const
{
    const QDir home(m_desktop->environment().value(u"HOME"_s));
    const QByteArray utf8 = m_mark.toUtf8();
    const QByteArray utf16(reinterpret_cast<const char *>(m_mark.utf16()), m_mark.size() * 2);
    QStringList found;
    QDirIterator all(home.path(),
                     QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                     QDirIterator::Subdirectories);
    while (all.hasNext()) {
        const QString path = home.relativeFilePath(all.next());
        if (path.startsWith(u"files/") || path.startsWith(u"Pictures/"))
            continue;
        QFile file(all.filePath());
        const QByteArray content = all.fileInfo().isFile() && file.open(QIODevice::ReadOnly)
                                       ? file.readAll()
                                       : QByteArray();
        if (path.contains(m_mark) || content.contains(utf8) || content.contains(utf16))
            found.append(path);
    }
    return found;
}

void TracesTest::offline_leavesTheCountAlone()
{
    start(QStringLiteral(PIXPRESS_OFFLINE),
          {m_desktop->sample(u"island map.png"_s, u"argument %1.png"_s.arg(m_mark))});
    live();
    QCOMPARE(traces(), QStringList());
    QCOMPARE(m_desktop->settings(u"Pixpress Offline"_s).keys(),
             QStringList({u"pixpress_quota_count"_s, u"pixpress_quota_month"_s}));

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
    live();
    QCOMPARE(traces(), QStringList());
    QCOMPARE(
        m_desktop->settings(u"Pixpress"_s).keys(),
        QStringList({u"pixpress_api_key"_s, u"pixpress_quota_count"_s, u"pixpress_quota_month"_s}));
}

QTEST_GUILESS_MAIN(TracesTest)
#include "tst_traces.moc"
