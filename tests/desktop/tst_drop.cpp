// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include <QDir>
#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// Files dragged from another process onto the window.
class DropTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void pictures_areCompressedBesideThemselves();
    void secondDrop_ontoTheList_isTakenToo();
    void menuBar_takesFilesForCopyingToo();
    void whatIsNoPicture_isLeftOutSilently();

private:
    bool isSmaller(const QString &output, const QString &source) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Program> m_program;
};

void DropTest::init()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(m_desktop->start());
    m_program = std::make_unique<Program>(*m_desktop, QStringLiteral(PIXPRESS_OFFLINE));
    QVERIFY(m_program->isInFront());
}

void DropTest::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

bool DropTest::isSmaller(const QString &output, const QString &source) const
{
    return m_desktop->size(output) > 0 && m_desktop->size(output) < m_desktop->size(source);
}

void DropTest::pictures_areCompressedBesideThemselves()
{
    const QStringList files{
        m_desktop->sample(u"lake at dusk.jpg"_s, u"the lake, at dusk.jpg"_s),
        m_desktop->sample(u"lighthouse.jpeg"_s, u"Übersicht ä#1.JPEG"_s),
        m_desktop->sample(u"paper balloon.png"_s, u"100% paper %20 balloon.png"_s),
        m_desktop->sample(u"marbled ink.webp"_s, u"墨流し & \"ink\" +?.webp"_s),
        m_desktop->sample(u"city by night.avif"_s, u"ночь;=.avif"_s),
        m_desktop->file(u"notes.txt"_s, "no picture"),
    };
    const qint64 before = m_desktop->size(u"the lake, at dusk.jpg"_s);

    QCOMPARE(drag(*m_desktop, files, *m_program).join(u", "),
             u"started, offered copy, done copy, read"_s);

    QTRY_VERIFY_WITH_TIMEOUT(
        isSmaller(u"the lake, at dusk-pixpress.jpg"_s, u"the lake, at dusk.jpg"_s), patience);
    QTRY_VERIFY_WITH_TIMEOUT(isSmaller(u"Übersicht ä#1-pixpress.JPEG"_s, u"Übersicht ä#1.JPEG"_s),
                             patience);
    QTRY_VERIFY_WITH_TIMEOUT(
        isSmaller(u"100% paper %20 balloon-pixpress.png"_s, u"100% paper %20 balloon.png"_s),
        patience);
    QTRY_VERIFY_WITH_TIMEOUT(
        isSmaller(u"墨流し & \"ink\" +?-pixpress.webp"_s, u"墨流し & \"ink\" +?.webp"_s), patience);
    QTRY_VERIFY_WITH_TIMEOUT(isSmaller(u"ночь;=-pixpress.avif"_s, u"ночь;=.avif"_s), patience);
    QCOMPARE(m_desktop->fileNames().size(), 11);
    QVERIFY(!m_desktop->fileNames().contains(u"notes-pixpress.txt"_s));
    QCOMPARE(m_desktop->size(u"the lake, at dusk.jpg"_s), before);
    QVERIFY(m_program->isRunning());
    QCOMPARE(m_program->errors(), "");
}

void DropTest::secondDrop_ontoTheList_isTakenToo()
{
    QVERIFY(drag(*m_desktop, {m_desktop->sample(u"island map.png"_s, u"a.png"_s)}, *m_program)
                .contains(u"done copy"_s));
    QTRY_VERIFY_WITH_TIMEOUT(isSmaller(u"a-pixpress.png"_s, u"a.png"_s), patience);
    QVERIFY(drag(*m_desktop, {m_desktop->sample(u"lake at dusk.jpg"_s, u"b.jpg"_s)}, *m_program)
                .contains(u"done copy"_s));
    QTRY_VERIFY_WITH_TIMEOUT(isSmaller(u"b-pixpress.jpg"_s, u"b.jpg"_s), patience);
}

void DropTest::menuBar_takesFilesForCopyingToo()
{
    const QPoint menuBar(m_program->area().center().x(), m_program->area().top() + 5);
    QCOMPARE(
        drag(*m_desktop, {m_desktop->sample(u"island map.png"_s, u"a.png"_s)}, menuBar).join(u", "),
        u"started, offered copy, done copy, read"_s);
    QTRY_VERIFY_WITH_TIMEOUT(isSmaller(u"a-pixpress.png"_s, u"a.png"_s), patience);
}

void DropTest::whatIsNoPicture_isLeftOutSilently()
{
    QVERIFY(QDir(m_desktop->path({})).mkdir(u"holidays.png.d"_s));
    const QImage empty = m_program->picture();
    const QStringList refused{m_desktop->file(u"notes.txt"_s, "no picture"),
                              m_desktop->file(u"png"_s, "no extension"),
                              m_desktop->path(u"holidays.png.d"_s)};
    QVERIFY(drag(*m_desktop, refused, *m_program).contains(u"done copy"_s));
    // The inviting panel is still there, as it was before the drag.
    QTRY_COMPARE_WITH_TIMEOUT(m_program->picture(), empty, patience);
    QCOMPARE(m_desktop->fileNames(), QStringList({u"notes.txt"_s, u"png"_s}));
}

QTEST_GUILESS_MAIN(DropTest)
#include "tst_drop.moc"
