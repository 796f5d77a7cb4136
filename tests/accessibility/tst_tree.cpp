// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "rules.h"
#include "session.h"

#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

#define EXPECT_CONTROLS(expected)                                                                  \
    EXPECT(m_session.reader.controls(), QStringLiteral(expected));                                 \
    QCOMPARE(faults(m_session.reader.tree()), QString())

/// What can be found in the window in each of its states: every control with its name, its role and
/// its state, and nothing that does not show.
class TreeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_session.start()); }
    void cleanup() { m_session.close(); }

    void onboarding();
    void key_isNeverTold();
    void storedKey_isNeverTold();
    void emptyWindow_andItsOptions();
    void list();
    void rowsOutOfSight_doNotShow();
    void settings();
    void menus();

private:
    void press(const QString &role, const QString &name)
    {
        QVERIFY(m_session.reader.find(role, name).act(u"Press"_s));
    }

    Session m_session;
};

void TreeTest::onboarding()
{
    QVERIFY(m_session.open(false));
    EXPECT_CONTROLS("menu item \"Pixpress\"\n"
                    "menu item \"File\"\n"
                    "password text \"TinyPNG API Key\"\n"
                    "push button \"Get Started\", disabled\n"
                    "link \"Get a free API key at tinypng.com →\"");
    m_session.desktop.type(u"x"_s);
    EXPECT_CONTROLS("menu item \"Pixpress\"\n"
                    "menu item \"File\"\n"
                    "password text \"TinyPNG API Key\"\n"
                    "push button \"Get Started\"\n"
                    "link \"Get a free API key at tinypng.com →\"");
}

void TreeTest::key_isNeverTold()
{
    const QString key = u"sesame-1a2b3c"_s;
    QVERIFY(m_session.open(false));
    const Element field = m_session.reader.find(u"password text"_s, u"TinyPNG API Key"_s);
    m_session.reader.texts.clear();
    m_session.desktop.type(key);
    EXPECT(field.text().value_or(QString()), QString(key.size(), u'•'));
    const QString pieces = field.textPieces().join(QString());
    QVERIFY(pieces.size() > key.size());
    // Not only dots: of a single character Qt 6.8 passes on the lower byte, and that of • is ".
    const bool hasLetters = std::ranges::any_of(pieces, [&](QChar c) { return key.contains(c); });
    QVERIFY2(!hasLetters, qPrintable(pieces));
    // Each character is reported as it is typed, as a dot.
    QTRY_COMPARE(m_session.reader.texts.filter(u"•"_s), QStringList(key.size(), u"•"_s));
    QString all = m_session.reader.texts.join(u'\n');
    for (const Node &node : m_session.reader.tree())
        all += node.name + node.description + node.element.text().value_or(QString()) + u'\n';
    QVERIFY(!all.contains(u"sesame"_s));
    QVERIFY(!all.contains(u"1a2b"_s));
}

/// Qt reports the text that a field is made with, too.
void TreeTest::storedKey_isNeverTold()
{
    QVERIFY(m_session.open(true));
    m_session.desktop.press({u"ctrl+comma"_s});
    QVERIFY(!m_session.reader.find(u"password text"_s, u"API Key"_s).isNull());
    m_session.reader.hearOut();
    const QString key = QString::fromLatin1(m_session.service->goodKey);
    QVERIFY(!m_session.reader.texts.join(u'\n').contains(key));
}

void TreeTest::emptyWindow_andItsOptions()
{
    QVERIFY(m_session.open(true));
    EXPECT_CONTROLS("menu item \"Pixpress\"\n"
                    "menu item \"File\"\n"
                    "push button \"Hide Sidebar\"\n"
                    "push button \"Add Files\"\n"
                    "push button \"Settings\"\n"
                    "check box \"Enable Resize\"\n"
                    "check box \"Convert Format\"\n"
                    "check box \"Copyright\"\n"
                    "check box \"Creation Date\"\n"
                    "check box \"GPS Location\"\n"
                    "combo box \"Save to\" (Save Alongside Original. Saves a copy with a "
                    "\"-pixpress\" suffix next to the original), collapsed\n"
                    "push button \"Choose Files\"");

    press(u"check box"_s, u"Enable Resize"_s);
    press(u"check box"_s, u"Convert Format"_s);
    press(u"combo box"_s, u"Convert to"_s);
    QVERIFY(!m_session.reader.find(u"list"_s, u"Convert to"_s).isNull());
    QCOMPARE(faults(m_session.reader.tree()), QString());
    QCOMPARE(described(m_session.reader.node(u"combo box"_s, u"Convert to"_s)),
             u"combo box \"Convert to\" (WebP), expanded"_s);
    QCOMPARE(described(m_session.reader.node(u"list item"_s, u"WebP"_s)),
             u"list item \"WebP\", selected"_s);
    press(u"list item"_s, u"JPEG"_s);
    QVERIFY(!m_session.reader.find(u"push button"_s, u"Background"_s).isNull());
    const QString controls = m_session.reader.controls();
    for (const auto &control :
         {u"check box \"Enable Resize\", checked"_s, u"combo box \"Method\" (Fit), collapsed"_s,
          u"text \"Width\""_s, u"text \"Height\""_s, u"check box \"Convert Format\", checked"_s,
          u"combo box \"Convert to\" (JPEG), collapsed"_s,
          u"push button \"Background\" (#ffffff)"_s})
        QVERIFY2(controls.contains(control), qUtf8Printable(controls));
    QCOMPARE(faults(m_session.reader.tree()), QString());

    press(u"push button"_s, u"Background"_s);
    QVERIFY(!m_session.reader.find(u"text"_s, u"Colour as #rrggbb"_s).isNull());
    QCOMPARE(faults(m_session.reader.tree()), QString());
    QCOMPARE(described(m_session.reader.node(u"radio button"_s, u"#ffffff"_s)),
             u"radio button \"#ffffff\", checked"_s);
}

void TreeTest::list()
{
    QVERIFY(m_session.open(true));
    m_session.service->hold();
    QVERIFY(m_session.add({u"a.png"_s, u"b.jpg"_s, u"c.webp"_s, u"d.avif"_s}));
    QVERIFY(m_session.answerOne()); // the upload
    QVERIFY(m_session.answerOne()); // the output
    m_session.service->goodKey = "another";
    QVERIFY(m_session.answerOne());
    m_session.service->goodKey = "good/key+1";
    EXPECT(m_session.reader.rows(),
           QStringList({u"a.png, 14 bytes, → 27 bytes, -97%, saved 973 bytes"_s,
                        u"b.jpg, 14 bytes, Invalid API key"_s, u"c.webp, 15 bytes, Compressing"_s,
                        u"d.avif, 15 bytes, Queued"_s}));
    EXPECT_CONTROLS("menu item \"Pixpress\"\n"
                    "menu item \"File\"\n"
                    "push button \"Hide Sidebar\"\n"
                    "push button \"Add Files\"\n"
                    "push button \"Clear Done\"\n"
                    "push button \"Clear All\"\n"
                    "push button \"Settings\"\n"
                    "check box \"Enable Resize\"\n"
                    "check box \"Convert Format\"\n"
                    "check box \"Copyright\"\n"
                    "check box \"Creation Date\"\n"
                    "check box \"GPS Location\"\n"
                    "combo box \"Save to\" (Save Alongside Original. Saves a copy with a "
                    "\"-pixpress\" suffix next to the original), collapsed\n"
                    "list \"Images\"\n"
                    "list item \"a.png, 14 bytes, → 27 bytes, -97%, saved 973 bytes\"\n"
                    "push button \"Show in Finder\"\n"
                    "list item \"b.jpg, 14 bytes, Invalid API key\"\n"
                    "push button \"Retry\"\n"
                    "list item \"c.webp, 15 bytes, Compressing\"\n"
                    "list item \"d.avif, 15 bytes, Queued\"");
}

void TreeTest::rowsOutOfSight_doNotShow()
{
    QVERIFY(m_session.open(true));
    m_session.service->hold();
    QStringList names;
    for (int number = 10; number < 40; ++number)
        names.append(u"%1.png"_s.arg(number));
    QVERIFY(m_session.add(names));
    QTRY_VERIFY_WITH_TIMEOUT(m_session.reader.rows().size() > 5, deadline);
    QCOMPARE(faults(m_session.reader.tree()), QString());
    const QRect list = m_session.reader.find(u"list"_s, u"Images"_s).area();
    for (const Node &node : m_session.reader.tree()) {
        if (node.role == u"list item"_s)
            QCOMPARE(node.isShowing(), list.intersects(node.element.area()));
    }
}

void TreeTest::settings()
{
    QVERIFY(m_session.open(true));
    const auto inSheet = [this] {
        return m_session.reader.controls().section(u"push button \"Done\"\n"_s, 1);
    };
    m_session.desktop.press({u"ctrl+comma"_s});
    EXPECT(inSheet(), QStringLiteral("page tab \"API Key\", checked, selected\n"
                                     "page tab \"Quota\"\n"
                                     "page tab \"About\"\n"
                                     "password text \"API Key\"\n"
                                     "push button \"Save Key\"\n"
                                     "push button \"Validate\"\n"
                                     "link \"tinypng.com/developers\""));
    QVERIFY(!m_session.reader.find(u"dialog"_s, u"Settings"_s).isNull());
    QCOMPARE(faults(m_session.reader.tree()), QString());
    press(u"page tab"_s, u"Quota"_s);
    EXPECT(inSheet(), QStringLiteral("page tab \"API Key\"\n"
                                     "page tab \"Quota\", checked, selected\n"
                                     "page tab \"About\"\n"
                                     "push button \"Reset Local Counter\""));
    QVERIFY(!m_session.reader.find(u"label"_s, u"Monthly Limit 500"_s).isNull());
    QCOMPARE(faults(m_session.reader.tree()), QString());
    press(u"page tab"_s, u"About"_s);
    EXPECT(inSheet(), QStringLiteral("page tab \"API Key\"\n"
                                     "page tab \"Quota\"\n"
                                     "page tab \"About\", checked, selected\n"
                                     "link \"The Pixpress authors\""));
    QCOMPARE(faults(m_session.reader.tree()), QString());
}

void TreeTest::menus()
{
    QVERIFY(m_session.open(true));
    press(u"menu item"_s, u"Pixpress"_s);
    QVERIFY(!m_session.reader.find(u"menu item"_s, u"Settings…"_s).isNull());
    QVERIFY(!m_session.reader.find(u"menu item"_s, u"Quit"_s).isNull());
    QCOMPARE(faults(m_session.reader.tree()), QString());
    m_session.desktop.press({u"Escape"_s});
    EXPECT_FOCUS(m_session.reader, "push button \"Choose Files\"");

    m_session.service->goodKey = "another";
    QVERIFY(m_session.add({u"a.png"_s}));
    EXPECT_FOCUS(m_session.reader, "list item \"a.png, 14 bytes, Invalid API key\"");
    m_session.desktop.press({u"Menu"_s});
    QVERIFY(!m_session.reader.find(u"menu item"_s, u"Retry"_s).isNull());
    QCOMPARE(faults(m_session.reader.tree()), QString());
}

QTEST_GUILESS_MAIN(TreeTest)
#include "tst_tree.moc"
