// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "wayland.h"

#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// The window under a Wayland compositor, without any X behind it that it could fall back on.
class WaylandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void window_isThatOfTheApplication();
    void files_canBeDroppedOnIt();

private:
    bool shows(const Program &program) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Wayland> m_wayland;
    std::unique_ptr<Program> m_program;
};

void WaylandTest::init()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(m_desktop->start());
    m_wayland = std::make_unique<Wayland>(*m_desktop);
    QVERIFY(m_wayland->start());
    m_program = std::make_unique<Program>(*m_desktop, QStringLiteral(PIXPRESS_OFFLINE),
                                          m_wayland->with({}));
    QVERIFY(shows(*m_program));
}

void WaylandTest::cleanup()
{
    m_program.reset();
    m_wayland.reset();
    m_desktop.reset();
}

bool WaylandTest::shows(const Program &program) const
{
    return settles([&] { return m_wayland->picture(program); });
}

void WaylandTest::window_isThatOfTheApplication()
{
    QCOMPARE(m_wayland->area(*m_program).size(), QSize(920, 620));
    const QJsonObject window = m_wayland->window(*m_program);
    QCOMPARE(window.value(u"app_id"_s), QStringLiteral(PIXPRESS_OFFLINE_ID)); // finds its icon
    QCOMPARE(window.value(u"name"_s), u"Pixpress"_s);
    m_desktop->press({u"ctrl+q"_s});
    QCOMPARE(m_program->exitStatus(), 0);
    QCOMPARE(m_program->errors(), "");
}

void WaylandTest::files_canBeDroppedOnIt()
{
    const QStringList files{m_desktop->sample(u"lake at dusk.jpg"_s, u"the lake, at dusk.jpg"_s),
                            m_desktop->sample(u"island map.png"_s, u"100% Übersicht #1.png"_s),
                            m_desktop->file(u"notes.txt"_s, "no picture")};
    Program source(*m_desktop, QStringLiteral(PIXPRESS_DRAG_SOURCE),
                   m_wayland->with(offering(files)));
    QVERIFY(shows(source));
    const QStringList course = drag(*m_desktop, source, m_wayland->area(source).center(),
                                    m_wayland->area(*m_program).center());
    QCOMPARE(course.join(u", "), u"started, offered copy, done copy, read"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop->size(u"the lake, at dusk-pixpress.jpg"_s) > 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop->size(u"100% Übersicht #1-pixpress.png"_s) > 0, patience);
    QCOMPARE(m_desktop->fileNames().size(), 5);
    QTRY_VERIFY_WITH_TIMEOUT(greenPoints(m_wayland->picture(*m_program)) > 100, patience);
    QCOMPARE(m_program->errors(), "");
}

QTEST_GUILESS_MAIN(WaylandTest)
#include "tst_wayland.moc"
