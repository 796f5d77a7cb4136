// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settings.h"
#include "program.h"
#include "ui/engine.h"
#include "ui/pixpressapp.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <chrono>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString portalName = u"org.freedesktop.portal.Desktop"_s;
const QString requestInterface = u"org.freedesktop.portal.Request"_s;

/// "PNG image: 1 image/png", with a line for each filter.
QString described(const QDBusArgument &filters)
{
    QString text;
    filters.beginArray();
    while (!filters.atEnd()) {
        QString name;
        filters.beginStructure();
        filters >> name;
        text += name + u':';
        filters.beginArray();
        while (!filters.atEnd()) {
            uint kind = 0;
            QString pattern;
            filters.beginStructure();
            filters >> kind >> pattern;
            filters.endStructure();
            text += u" %1 %2"_s.arg(kind).arg(pattern);
        }
        filters.endArray();
        filters.endStructure();
        text += u'\n';
    }
    filters.endArray();
    return text;
}

bool showsItem(const QQuickItem *item, const QString &name)
{
    return item->isVisible() &&
           (item->objectName() == name ||
            std::ranges::any_of(item->childItems(),
                                [&](const QQuickItem *child) { return showsItem(child, name); }));
}

} // namespace

/// A desktop portal whose file chooser is answered by the test.
class Chooser : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")

public:
    const QString bus = u"chooser"_s;
    const QString path = u"/org/freedesktop/portal/desktop"_s;

    int asked = 0;
    QString parentWindow;
    QString title;
    QVariantMap options;
    bool refuses = false;

    void answer(uint response, const QStringList &uris = {})
    {
        auto signal = QDBusMessage::createSignal(m_handle, requestInterface, u"Response"_s);
        signal << response << (uris.isEmpty() ? QVariantMap() : QVariantMap{{u"uris"_s, uris}});
        QDBusConnection(bus).send(signal);
    }

public Q_SLOTS:
    QDBusObjectPath OpenFile(const QString &parent, const QString &about, const QVariantMap &how)
    {
        ++asked;
        parentWindow = parent;
        title = about;
        options = how;
        if (refuses)
            sendErrorReply(QDBusError::Failed);
        const QString sender = message().service().mid(1).replace(u'.', u'_');
        m_handle = u"%1/request/%2/%3"_s.arg(path, sender, how.value(u"handle_token"_s).toString());
        return QDBusObjectPath(m_handle);
    }

private:
    QString m_handle;
};

/// Picking files and folders in the desktop's own file chooser.
class FileChooserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void program_compressesWhatIsChosen();
    void files_areAskedForAndAdded();
    void folder_isAskedForAndTaken();
    void folder_opensAtTheOneBefore();
    void cancelled_changesNothing_data();
    void cancelled_changesNothing();
    void window_takesNoInputMeanwhile();
    void withoutAnAnswer_thePanelOfQtOpens_data();
    void withoutAnAnswer_thePanelOfQtOpens();

private:
    using Act = std::function<void()>;

    void registerPortal() const;
    /// Runs `act` once the portal has been asked, and returns when the panel is closed.
    void pickFiles(const Act &act);
    void pickFolder(const Act &act);
    void onceAsked(const Act &act);
    bool showsPanelOfQt() const;

    Desktop m_desktop;
    Chooser m_chooser;
    TransientSettings m_settings;
    std::unique_ptr<PixpressApp> m_app;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr;
};

void FileChooserTest::initTestCase()
{
    QVERIFY(m_desktop.start());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_desktop.busAddress().toLatin1());
    auto connection = QDBusConnection::connectToBus(m_desktop.busAddress(), m_chooser.bus);
    QVERIFY(connection.registerObject(m_chooser.path, &m_chooser, QDBusConnection::ExportAllSlots));
    registerPortal();
    m_settings.setValue(u"pixpress_api_key"_s, u"key"_s);
}

void FileChooserTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(m_chooser.bus);
}

void FileChooserTest::registerPortal() const
{
    QVERIFY(QDBusConnection(m_chooser.bus).registerService(portalName));
}

void FileChooserTest::init()
{
    m_chooser.asked = 0;
    m_chooser.refuses = false;
    m_app = std::make_unique<PixpressApp>(
        m_settings, ServiceConfig{.baseURL = QUrl(u"http://127.0.0.1:1"_s), .limits = {}});
    m_engine = makeEngine();
    QVERIFY(m_app->show(*m_engine));
    m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().first());
    QVERIFY(QTest::qWaitForWindowActive(m_window));
}

void FileChooserTest::cleanup()
{
    m_engine.reset();
    m_app.reset();
}

void FileChooserTest::onceAsked(const Act &act)
{
    const auto inside = [this, act] {
        QTRY_COMPARE_WITH_TIMEOUT(m_chooser.asked, 1, patience);
        act();
    };
    QMetaObject::invokeMethod(this, inside, Qt::QueuedConnection);
}

void FileChooserTest::pickFiles(const Act &act)
{
    m_app->openFilePicker();
    onceAsked(act);
    QTRY_VERIFY_WITH_TIMEOUT(m_chooser.asked == 1 && !m_app->isPanelOpen(), patience);
}

void FileChooserTest::pickFolder(const Act &act)
{
    onceAsked(act);
    m_app->options()->chooseFolder();
    QCOMPARE(m_chooser.asked, 1);
}

bool FileChooserTest::showsPanelOfQt() const
{
    return showsItem(m_window->contentItem(), u"fileDialogListView"_s);
}

void FileChooserTest::program_compressesWhatIsChosen()
{
    const QString first = m_desktop.sample(u"island map.png"_s, u"100% ä#1 map.png"_s);
    const QString second = m_desktop.sample(u"lake at dusk.jpg"_s, u"b.jpg"_s);
    Program program(m_desktop, QStringLiteral(PIXPRESS_OFFLINE));
    QVERIFY(program.isInFront());
    m_desktop.press({u"ctrl+o"_s});
    QTRY_COMPARE_WITH_TIMEOUT(m_chooser.asked, 1, patience);
    QCOMPARE(m_chooser.parentWindow, u"x11:%1"_s.arg(program.window(), 0, 16));
    m_chooser.answer(0, {QString::fromLatin1(QUrl::fromLocalFile(first).toEncoded()),
                         QString::fromLatin1(QUrl::fromLocalFile(second).toEncoded())});
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop.size(u"100% ä#1 map-pixpress.png"_s) > 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_desktop.size(u"b-pixpress.jpg"_s) > 0, patience);

    m_desktop.press({u"ctrl+o"_s});
    QTRY_COMPARE_WITH_TIMEOUT(m_chooser.asked, 2, patience);
    m_chooser.answer(1);
    m_desktop.press({u"ctrl+q"_s});
    QCOMPARE(program.exitStatus(), 0);
    QCOMPARE(program.errors(), "");
}

void FileChooserTest::files_areAskedForAndAdded()
{
    pickFiles([this] { m_chooser.answer(0, {u"file:///a.png"_s, u"file:///b%20c.JPG"_s}); });
    QCOMPARE(m_chooser.title, u"Select images to compress (PNG, JPEG, WebP, AVIF)"_s);
    QVERIFY(m_chooser.options.value(u"modal"_s).toBool());
    QVERIFY(m_chooser.options.value(u"multiple"_s).toBool());
    QVERIFY(!m_chooser.options.value(u"directory"_s).toBool());
    QVERIFY(!m_chooser.options.contains(u"accept_label"_s));
    QCOMPARE(described(m_chooser.options.value(u"filters"_s).value<QDBusArgument>()),
             u"PNG image, JPEG image: 1 image/png 1 image/jpeg\nAll files: 0 *\n"_s);
    const auto &tasks = m_app->appState()->compressionQueue()->tasks();
    QCOMPARE(tasks.size(), 2);
    QCOMPARE(tasks[0].sourceURL, QUrl(u"file:///a.png"_s));
    QCOMPARE(tasks[1].sourceURL, QUrl::fromLocalFile(u"/b c.JPG"_s));
}

void FileChooserTest::folder_isAskedForAndTaken()
{
    pickFolder([this] { m_chooser.answer(0, {u"file:///some/folder"_s}); });
    QCOMPARE(m_chooser.title, u"Choose where Pixpress should save compressed images"_s);
    QCOMPARE(m_chooser.options.value(u"accept_label"_s).toString(), u"Select Folder"_s);
    QVERIFY(m_chooser.options.value(u"directory"_s).toBool());
    QVERIFY(!m_chooser.options.value(u"multiple"_s).toBool());
    QVERIFY(!m_chooser.options.contains(u"current_folder"_s));
    QCOMPARE(m_app->appState()->options().customFolderURL,
             std::optional(QUrl(u"file:///some/folder"_s)));
}

void FileChooserTest::folder_opensAtTheOneBefore()
{
    CompressionOptions options;
    options.customFolderURL = QUrl::fromLocalFile(u"/before ä"_s);
    m_app->appState()->setOptions(options);
    pickFolder([this] { m_chooser.answer(0, {u"file:///after"_s}); });
    QCOMPARE(m_chooser.options.value(u"current_folder"_s).toByteArray(),
             QByteArray("/before ä") + '\0');
    QCOMPARE(m_app->appState()->options().customFolderURL, std::optional(QUrl(u"file:///after"_s)));
}

void FileChooserTest::cancelled_changesNothing_data()
{
    QTest::addColumn<uint>("response");
    QTest::newRow("cancelled") << 1U;
    QTest::newRow("closed") << 2U;
}

void FileChooserTest::cancelled_changesNothing()
{
    QFETCH(uint, response);
    CompressionOptions options;
    options.customFolderURL = QUrl(u"file:///before"_s);
    m_app->appState()->setOptions(options);
    pickFiles([this, response] { m_chooser.answer(response); });
    QVERIFY(m_app->appState()->compressionQueue()->tasks().isEmpty());
    m_chooser.asked = 0;
    pickFolder([this, response] { m_chooser.answer(response); });
    QCOMPARE(m_app->appState()->options(), options);
    QVERIFY(!showsPanelOfQt());
}

void FileChooserTest::window_takesNoInputMeanwhile()
{
    const auto *before = m_window->activeFocusItem();
    pickFiles([&] {
        QTest::keyClick(m_window, Qt::Key_Tab);
        QTest::keyClick(m_window, Qt::Key_Comma, Qt::ControlModifier);
        QTest::mouseClick(m_window, Qt::LeftButton, {}, QPoint(220, 55)); // "Enable Resize"
        QCOMPARE(m_window->activeFocusItem(), before);
        m_chooser.answer(1);
    });
    QVERIFY(!m_app->appState()->showSettings());
    QTest::keyClick(m_window, Qt::Key_Tab);
    QVERIFY(m_window->activeFocusItem() != before);
}

void FileChooserTest::withoutAnAnswer_thePanelOfQtOpens_data()
{
    QTest::addColumn<bool>("isThere");
    QTest::addColumn<bool>("refuses");
    QTest::newRow("no portal") << false << false;
    QTest::newRow("a portal without file chooser") << true << true;
    QTest::newRow("a portal that dies") << true << false;
}

void FileChooserTest::withoutAnAnswer_thePanelOfQtOpens()
{
    QFETCH(bool, isThere);
    QFETCH(bool, refuses);
    m_chooser.refuses = refuses;
    QDBusConnection bus(m_chooser.bus);
    if (!isThere)
        QVERIFY(bus.unregisterService(portalName));
    bool opens = false;
    // Each look returns at once: the portal's panel gives way to the other only when nothing that
    // it has called is still running.
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&] {
        if (isThere && !refuses && m_chooser.asked == 1)
            bus.unregisterService(portalName);
        if (showsPanelOfQt()) {
            opens = true;
            QTest::keyClick(m_window, Qt::Key_Escape);
        }
    });
    look.start(10ms);
    m_app->openFilePicker();
    QTRY_VERIFY_WITH_TIMEOUT(opens && !m_app->isPanelOpen(), patience);
    registerPortal();
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // of the windows in this process
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication application(argc, argv);
    FileChooserTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_filechooser.moc"
