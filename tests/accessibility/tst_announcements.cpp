// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "session.h"

#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// What is told while nobody asks: a status once, the end of the work once, and what went wrong.
class AnnouncementsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_session.start()); }
    void cleanup() { m_session.close(); }

    void statusOfABatch_isToldOncePerChange_andItsOutcomeOnce();
    void retry_isToldOncePerChange();
    void refusedKey_isToldEachTime();
    void savedKey_isToldEachTime();

private:
    Session m_session;
};

void AnnouncementsTest::statusOfABatch_isToldOncePerChange_andItsOutcomeOnce()
{
    QVERIFY(m_session.open(true));
    m_session.service->hold();
    QVERIFY(m_session.add({u"a.png"_s, u"b.jpg"_s, u"c.webp"_s}));
    EXPECT_FOCUS(m_session.reader, "list item \"a.png, 14 bytes, Compressing\"");
    EXPECT(m_session.reader.rows().size(), 3);
    m_session.reader.hearOut();

    QStringList expected;
    const auto answered = [&](const QStringList &heard) {
        expected += heard;
        QVERIFY(m_session.answerOne());
        EXPECT(m_session.reader.heard, expected);
    };
    answered({u"a.png, 14 bytes, Downloading"_s});
    answered({u"a.png, 14 bytes, → 27 bytes, -97%, saved 973 bytes"_s,
              u"b.jpg, 14 bytes, Compressing"_s});
    m_session.service->goodKey = "another";
    answered({u"b.jpg, 14 bytes, Invalid API key"_s, u"c.webp, 15 bytes, Compressing"_s});
    m_session.service->goodKey = "good/key+1";
    answered({u"c.webp, 15 bytes, Downloading"_s});
    answered({u"c.webp, 15 bytes, → 27 bytes, -97%, saved 973 bytes"_s,
              u"2/3 completed, 1 failed, Total saved: 2 KB"_s});
    QCOMPARE(m_session.reader.heard, expected);

    // What is painted anew, and where the keyboard goes, tells nothing of them again.
    m_session.desktop.press({u"Down"_s, u"Down"_s, u"Up"_s, u"Up"_s});
    m_session.desktop.press({u"ctrl+comma"_s});
    EXPECT_FOCUS(m_session.reader, "password text \"API Key\"");
    m_session.desktop.press({u"Escape"_s});
    EXPECT_FOCUS(m_session.reader,
                 "list item \"a.png, 14 bytes, → 27 bytes, -97%, saved 973 bytes\"");
    QCOMPARE(m_session.reader.heard, expected);
}

void AnnouncementsTest::retry_isToldOncePerChange()
{
    QVERIFY(m_session.open(true));
    m_session.service->goodKey = "another";
    QVERIFY(m_session.add({u"a.png"_s}));
    EXPECT_FOCUS(m_session.reader, "list item \"a.png, 14 bytes, Invalid API key\"");
    QTRY_VERIFY_WITH_TIMEOUT(m_session.reader.heard.contains(u"0/1 completed, 1 failed"_s),
                             deadline);
    m_session.reader.hearOut();
    m_session.service->goodKey = "good/key+1";
    m_session.service->hold();
    m_session.desktop.press({u"Return"_s});
    EXPECT(m_session.reader.heard, QStringList(u"a.png, 14 bytes, Compressing"_s));
    QVERIFY(m_session.answerOne());
    EXPECT_FOCUS(m_session.reader, "list item \"a.png, 14 bytes, Downloading\"");
    QVERIFY(m_session.answerOne());
    EXPECT(m_session.reader.heard,
           QStringList({u"a.png, 14 bytes, Compressing"_s, u"a.png, 14 bytes, Downloading"_s,
                        u"a.png, 14 bytes, → 27 bytes, -97%, saved 973 bytes"_s,
                        u"1/1 completed, Total saved: 973 bytes"_s}));
}

void AnnouncementsTest::refusedKey_isToldEachTime()
{
    const QString refused = u"Invalid API key — please check and try again."_s;
    QVERIFY(m_session.open(false));
    m_session.desktop.type(u"wrong"_s);
    QStringList expected;
    for (int time = 0; time < 2; ++time) {
        m_session.desktop.press({u"Return"_s});
        expected.append(refused);
        EXPECT(m_session.reader.heard, expected);
        EXPECT_FOCUS(m_session.reader, "password text \"TinyPNG API Key\"");
    }
}

void AnnouncementsTest::savedKey_isToldEachTime()
{
    QVERIFY(m_session.open(true));
    m_session.desktop.press({u"ctrl+comma"_s});
    const Element button = m_session.reader.find(u"push button"_s, u"Save Key"_s);
    QStringList expected;
    for (int time = 0; time < 2; ++time) {
        QVERIFY(button.act(u"Press"_s));
        expected.append(u"Key saved successfully"_s);
        EXPECT(m_session.reader.heard, expected);
    }
}

QTEST_GUILESS_MAIN(AnnouncementsTest)
#include "tst_announcements.moc"
