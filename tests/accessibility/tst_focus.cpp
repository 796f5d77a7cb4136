// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "session.h"

#include <QJsonDocument>
#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// The whole of the work by what assistive technology can do alone; and after each step the
/// keyboard is where one goes on.
class FocusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_session.start()); }
    void cleanup() { m_session.close(); }

    void key_leadsToChoosingFiles();
    void settings_leadBackToWhatOpenedThem();
    void options_keepTheKeyboard();
    void colour_leadsBackToItsWell();
    void menusAndDialogs_leadBack();
    void list_isWorkedThrough();

private:
    /// Goes to a control and presses it.
    void press(const QString &role, const QString &name)
    {
        const Element control = m_session.reader.find(role, name);
        QVERIFY(control.takeFocus());
        QVERIFY(control.act(u"Press"_s));
    }

    Session m_session;
};

void FocusTest::key_leadsToChoosingFiles()
{
    QVERIFY(m_session.open(false));
    EXPECT_FOCUS(m_session.reader, "password text \"TinyPNG API Key\"");
    const Element field = m_session.reader.find(u"password text"_s, u"TinyPNG API Key"_s);
    QVERIFY(field.setText(u"wrong"_s));
    press(u"push button"_s, u"Get Started"_s);
    QVERIFY(!m_session.reader
                 .find(u"notification"_s, u"Invalid API key — please check and try again."_s)
                 .isNull());
    EXPECT_FOCUS(m_session.reader, "password text \"TinyPNG API Key\"");

    QVERIFY(field.setText(QString::fromLatin1(m_session.service->goodKey)));
    press(u"push button"_s, u"Get Started"_s);
    EXPECT_FOCUS(m_session.reader, "push button \"Choose Files\"");
}

void FocusTest::settings_leadBackToWhatOpenedThem()
{
    QVERIFY(m_session.open(true));
    EXPECT_FOCUS(m_session.reader, "push button \"Choose Files\"");
    press(u"push button"_s, u"Settings"_s);
    EXPECT_FOCUS(m_session.reader, "password text \"API Key\"");
    QVERIFY(m_session.reader.find(u"page tab"_s, u"Quota"_s).act(u"Press"_s));
    EXPECT_FOCUS(m_session.reader, "page tab \"Quota\"");
    m_session.desktop.press({u"Right"_s});
    EXPECT_FOCUS(m_session.reader, "page tab \"About\"");
    m_session.desktop.press({u"Left"_s, u"Left"_s});
    EXPECT_FOCUS(m_session.reader, "page tab \"API Key\"");
    m_session.service->hold();
    press(u"push button"_s, u"Validate"_s); // which is disabled then
    EXPECT_FOCUS(m_session.reader, "password text \"API Key\"");
    m_session.service->release();
    QVERIFY(!m_session.reader.find(u"notification"_s, u"API key is valid"_s).isNull());
    press(u"push button"_s, u"Done"_s);
    EXPECT_FOCUS(m_session.reader, "push button \"Settings\"");

    QVERIFY(m_session.reader.find(u"check box"_s, u"Copyright"_s).takeFocus());
    EXPECT_FOCUS(m_session.reader, "check box \"Copyright\"");
    m_session.desktop.press({u"ctrl+comma"_s});
    EXPECT_FOCUS(m_session.reader, "password text \"API Key\"");
    m_session.desktop.press({u"Escape"_s});
    EXPECT_FOCUS(m_session.reader, "check box \"Copyright\"");
}

void FocusTest::options_keepTheKeyboard()
{
    QVERIFY(m_session.open(true));
    press(u"check box"_s, u"Enable Resize"_s);
    EXPECT_FOCUS(m_session.reader, "check box \"Enable Resize\"");
    press(u"combo box"_s, u"Method"_s);
    EXPECT_FOCUS(m_session.reader, "list item \"Fit\"");
    m_session.desktop.press({u"Down"_s});
    EXPECT_FOCUS(m_session.reader, "list item \"Cover\"");
    m_session.desktop.press({u"Escape"_s});
    EXPECT_FOCUS(m_session.reader, "combo box \"Method\"");
    press(u"combo box"_s, u"Method"_s);
    QVERIFY(m_session.reader.find(u"list item"_s, u"Thumb"_s).act(u"Press"_s));
    EXPECT_FOCUS(m_session.reader, "combo box \"Method\"");
    QVERIFY(m_session.reader.find(u"text"_s, u"Width"_s).setText(u"64"_s));
    QVERIFY(m_session.reader.find(u"text"_s, u"Height"_s).setText(u"48"_s));

    QVERIFY(m_session.add({u"a.png"_s}));
    EXPECT(m_session.service->fetches().size(), 1);
    const QJsonObject resize{{u"method"_s, u"thumb"_s}, {u"width"_s, 64}, {u"height"_s, 48}};
    QCOMPARE(QJsonDocument::fromJson(m_session.service->fetches().first()).object(),
             QJsonObject({{u"resize"_s, resize}}));
    // Who is at work elsewhere is not called away by the list.
    EXPECT(m_session.reader.rows().size(), 1);
    EXPECT_FOCUS(m_session.reader, "combo box \"Method\"");
}

void FocusTest::colour_leadsBackToItsWell()
{
    QVERIFY(m_session.open(true));
    press(u"check box"_s, u"Convert Format"_s);
    press(u"combo box"_s, u"Convert to"_s);
    QVERIFY(m_session.reader.find(u"list item"_s, u"JPEG"_s).act(u"Press"_s));
    EXPECT_FOCUS(m_session.reader, "combo box \"Convert to\"");
    press(u"push button"_s, u"Background"_s);
    EXPECT_FOCUS(m_session.reader, "text \"Colour as #rrggbb\"");
    m_session.desktop.press({u"Escape"_s});
    EXPECT_FOCUS(m_session.reader, "push button \"Background\"");
    press(u"push button"_s, u"Background"_s);
    press(u"radio button"_s, u"#000000"_s);
    EXPECT_FOCUS(m_session.reader, "push button \"Background\"");
    QCOMPARE(m_session.reader.find(u"push button"_s, u"Background"_s).description(), u"#000000"_s);
}

void FocusTest::menusAndDialogs_leadBack()
{
    QVERIFY(m_session.open(true));
    QVERIFY(m_session.reader.find(u"check box"_s, u"Copyright"_s).takeFocus());
    EXPECT_FOCUS(m_session.reader, "check box \"Copyright\"");
    QVERIFY(m_session.reader.find(u"menu item"_s, u"File"_s).act(u"Press"_s));
    QVERIFY(!m_session.reader.find(u"menu item"_s, u"Add Files…"_s).isNull());
    m_session.desktop.press({u"Down"_s});
    EXPECT_FOCUS(m_session.reader, "menu item \"Add Files…\"");
    m_session.desktop.press({u"Escape"_s});
    EXPECT_FOCUS(m_session.reader, "check box \"Copyright\"");

    press(u"push button"_s, u"Choose Files"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_session.reader.focus() != u"push button \"Choose Files\""_s,
                             deadline);
    m_session.desktop.press({u"Escape"_s});
    EXPECT_FOCUS(m_session.reader, "push button \"Choose Files\"");
}

void FocusTest::list_isWorkedThrough()
{
    QVERIFY(m_session.open(true));
    m_session.service->goodKey = "another";
    QVERIFY(m_session.add({u"a.png"_s, u"b.png"_s}));
    EXPECT_FOCUS(m_session.reader, "list item \"a.png, 14 bytes, Invalid API key\"");
    m_session.desktop.press({u"Down"_s});
    EXPECT_FOCUS(m_session.reader, "list item \"b.png, 14 bytes, Invalid API key\"");
    m_session.desktop.press({u"Menu"_s});
    QVERIFY(!m_session.reader.find(u"menu item"_s, u"Retry"_s).isNull());
    m_session.desktop.press({u"Down"_s});
    EXPECT_FOCUS(m_session.reader, "menu item \"Retry\"");
    m_session.desktop.press({u"Escape"_s});
    EXPECT_FOCUS(m_session.reader, "list item \"b.png, 14 bytes, Invalid API key\"");

    m_session.service->goodKey = "good/key+1";
    press(u"push button"_s, u"Retry"_s); // the last that shows: that of the second row
    EXPECT_FOCUS(m_session.reader,
                 "list item \"b.png, 14 bytes, → 27 bytes, -97%, saved 973 bytes\"");
    m_session.service->hold();
    press(u"push button"_s, u"Retry"_s);
    EXPECT_FOCUS(m_session.reader, "list item \"a.png, 14 bytes, Compressing\"");
    QVERIFY(m_session.answerOne());
    EXPECT_FOCUS(m_session.reader, "list item \"a.png, 14 bytes, Downloading\"");
    press(u"push button"_s, u"Clear Done"_s);
    EXPECT_FOCUS(m_session.reader, "list item \"a.png, 14 bytes, Downloading\"");
    QVERIFY(m_session.answerOne());
    EXPECT_FOCUS(m_session.reader,
                 "list item \"a.png, 14 bytes, → 27 bytes, -97%, saved 973 bytes\"");
    press(u"push button"_s, u"Clear All"_s);
    EXPECT_FOCUS(m_session.reader, "push button \"Choose Files\"");
}

QTEST_GUILESS_MAIN(FocusTest)
#include "tst_focus.moc"
