// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"

#include <QDBusConnection>
#include <QTest>
#include <QUrl>

using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// A file manager that only takes down what it is asked to show.
class FileManager : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QStringList shown;

public Q_SLOTS:
    void ShowItems(const QStringList &uris, const QString &startupId)
    {
        shown.append(uris);
        Q_UNUSED(startupId);
    }
};

/// Finding the smaller file: on a row, by the keyboard.
class RevealTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void output_isShownInTheFileManager();
    void withoutFileManager_theFolderIsOpened_data();
    void withoutFileManager_theFolderIsOpened();

private:
    void compressAndAsk(const QList<std::pair<QString, QString>> &environment = {});

    std::unique_ptr<Desktop> m_desktop;
    std::unique_ptr<Program> m_program;
};

void RevealTest::init()
{
    m_desktop = std::make_unique<Desktop>();
    QVERIFY(m_desktop->start());
}

void RevealTest::cleanup()
{
    m_program.reset();
    m_desktop.reset();
}

void RevealTest::compressAndAsk(const QList<std::pair<QString, QString>> &environment)
{
    const QString picture = m_desktop->sample(u"island map.png"_s, u"100% ä#1 map.png"_s);
    m_program =
        std::make_unique<Program>(*m_desktop, QStringLiteral(PIXPRESS_OFFLINE),
                                  Invocation{.arguments = {picture}, .environment = environment});
    QVERIFY(m_program->isInFront());
    // The row says in green what was saved.
    QTRY_VERIFY_WITH_TIMEOUT(greenPoints(m_program->picture()) > 50, patience);
    // With the file the keyboard has come into the list.
    m_desktop->press({u"Return"_s});
}

void RevealTest::output_isShownInTheFileManager()
{
    FileManager manager;
    auto bus = QDBusConnection::connectToBus(m_desktop->busAddress(), u"test"_s);
    QVERIFY(bus.registerObject(u"/org/freedesktop/FileManager1"_s, &manager,
                               QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(u"org.freedesktop.FileManager1"_s));
    compressAndAsk();
    QTRY_VERIFY_WITH_TIMEOUT(!manager.shown.isEmpty(), patience);
    const QString folder =
        QString::fromLatin1(QUrl::fromLocalFile(m_desktop->path({})).toEncoded());
    QCOMPARE(manager.shown, QStringList({folder + u"100%25%20%C3%A4%231%20map-pixpress.png"_s}));
    QCOMPARE(m_program->errors(), "");
    QDBusConnection::disconnectFromBus(u"test"_s);
}

void RevealTest::withoutFileManager_theFolderIsOpened_data()
{
    QTest::addColumn<QString>("busAddress");
    QTest::newRow("nobody answers") << QString();
    QTest::newRow("there is no bus") << u"unix:path=/nonexistent"_s;
}

void RevealTest::withoutFileManager_theFolderIsOpened()
{
    QFETCH(QString, busAddress);
    m_desktop->command(u"xdg-open"_s, R"(env > "$HOME/files/environment"
                                          printf %s "$1" > "$HOME/files/.new" &&
                                          mv "$HOME/files/.new" "$HOME/files/opened")");
    if (busAddress.isEmpty())
        compressAndAsk();
    else
        compressAndAsk({{u"DBUS_SESSION_BUS_ADDRESS"_s, busAddress}});
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop->size(u"opened"_s) > 0, patience);
    QFile opened(m_desktop->path(u"opened"_s));
    QVERIFY(opened.open(QIODevice::ReadOnly));
    QCOMPARE(QUrl::fromUserInput(QString::fromUtf8(opened.readAll())),
             QUrl::fromLocalFile(m_desktop->path({})));
    // What this program chooses of the toolkit is nothing to those that it starts.
    QFile environment(m_desktop->path(u"environment"_s));
    QVERIFY(environment.open(QIODevice::ReadOnly));
    QVERIFY(!environment.readAll().contains("QT_QUICK"));
    QCOMPARE(m_program->errors(), "");
}

QTEST_GUILESS_MAIN(RevealTest)
#include "tst_reveal.moc"
