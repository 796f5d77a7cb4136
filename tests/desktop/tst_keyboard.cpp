// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"
#include "service.h"

#include <QJsonDocument>
#include <QTest>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// What is done by keys alone.
class KeyboardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void controlComma_opensTheSettings_data();
    void controlComma_opensTheSettings();
    void controlQ_quits();
    void closingTheWindow_quits();
    void controlQ_quits_whileCompressing();
    void tabAndSpace_switchAnOption();

private:
    bool areCornersDimmed(const QImage &before) const;

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Service> m_service;
    std::unique_ptr<Program> m_program;
};

void KeyboardTest::init()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(m_desktop->start());
    m_service = std::make_unique<Service>();
    m_desktop->store(u"Pixpress"_s,
                     {{u"pixpress_api_key"_s, QString::fromLatin1(m_service->goodKey)}});
    m_program = std::make_unique<Program>(*m_desktop, QStringLiteral(PIXPRESS_AT),
                                          Invocation{.arguments = {m_service->address()}});
    QVERIFY(m_program->isInFront());
}

void KeyboardTest::cleanup()
{
    m_program.reset();
    m_service.reset();
    m_desktop.reset();
}

bool KeyboardTest::areCornersDimmed(const QImage &before) const
{
    const QImage now = m_program->picture();
    const QRect inner = now.rect().adjusted(3, 3, -3, -3);
    return std::ranges::all_of(
        std::array{inner.topLeft(), inner.topRight(), inner.bottomLeft(), inner.bottomRight()},
        [&](QPoint corner) {
            return qGray(now.pixel(corner)) < 0.85 * qGray(before.pixel(corner));
        });
}

void KeyboardTest::controlComma_opensTheSettings_data()
{
    QTest::addColumn<QString>("closing");
    QTest::newRow("Return closes") << u"Return"_s;
    QTest::newRow("Enter of the number block closes") << u"KP_Enter"_s;
    QTest::newRow("Escape closes") << u"Escape"_s;
}

void KeyboardTest::controlComma_opensTheSettings()
{
    QFETCH(QString, closing);
    const QImage before = m_program->picture();
    for (int round = 0; round < 2; ++round) {
        m_desktop->press({u"ctrl+comma"_s});
        QTRY_VERIFY_WITH_TIMEOUT(areCornersDimmed(before), patience);
        m_desktop->press({closing});
        QTRY_COMPARE_WITH_TIMEOUT(m_program->picture(), before, patience);
    }
    QCOMPARE(m_program->errors(), "");
}

void KeyboardTest::controlQ_quits()
{
    m_desktop->press({u"ctrl+q"_s});
    QCOMPARE(m_program->exitStatus(), 0);
    QCOMPARE(m_program->errors(), "");
}

void KeyboardTest::closingTheWindow_quits()
{
    m_desktop->press({u"alt+F4"_s}); // the window manager's
    QCOMPARE(m_program->exitStatus(), 0);
    QCOMPARE(m_program->errors(), "");
}

void KeyboardTest::controlQ_quits_whileCompressing()
{
    m_service->hold();
    const QString picture = m_desktop->file(u"a.png"_s, "bytes of a picture");
    QVERIFY(drag(*m_desktop, {picture}, *m_program).contains(u"done copy"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_service->uploads().size(), 1, patience);
    m_desktop->press({u"ctrl+q"_s});
    QCOMPARE(m_program->exitStatus(), 0);
    QCOMPARE(m_program->errors(), "");
    QCOMPARE(m_desktop->fileNames(), QStringList({u"a.png"_s}));
}

void KeyboardTest::tabAndSpace_switchAnOption()
{
    // Over the toolbar's three buttons to the first switch, that of resizing; then past the method
    // to the width.
    m_desktop->press({u"Tab"_s, u"Tab"_s, u"Tab"_s, u"Tab"_s, u"space"_s});
    m_desktop->press({u"Tab"_s, u"Tab"_s});
    m_desktop->type(u"64"_s);

    const QString picture = m_desktop->file(u"a.png"_s, "bytes of a picture");
    QVERIFY(drag(*m_desktop, {picture}, *m_program).contains(u"done copy"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_desktop->size(u"a-pixpress.png"_s), m_service->output.size(),
                              patience);
    const QJsonObject resize{{u"method"_s, u"scale"_s}, {u"width"_s, 64}};
    QCOMPARE(QJsonDocument::fromJson(m_service->fetches().value(0)).object(),
             QJsonObject({{u"resize"_s, resize}}));
}

QTEST_GUILESS_MAIN(KeyboardTest)
#include "tst_keyboard.moc"
