// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settings.h"
#include "ui/appearance.h"
#include "ui/engine.h"
#include "ui/pixpressapp.h"

#include <QDir>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

/// The panels that the user picks files and folders in, as Qt draws them where a desktop has none.
class PanelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void filePanel_offersPicturesOfEitherCaseFirst();
    void filePanel_isDarkAndHasNoButtonWithoutName();
    void filePanel_opensWhereThePicturesAre();
    void openedFile_isAdded();
    void cancelledFilePanel_addsNothing_data();
    void cancelledFilePanel_addsNothing();
    void chosenFolder_isTheOneToSaveTo();
    void folderPanel_opensAtTheFolderAndTakesItWithoutSubfolders();
    void cancelledFolderPanel_keepsTheFolder();

private:
    using Act = std::function<void()>;

    /// What is done in the panel that is asked for next; it is cancelled if it is still open then.
    void inThePanel(const Act &act);
    void pickFiles(const Act &act);
    void pickFolder(const Act &act);

    QQuickItem *item(const QString &name) const;
    QQuickItem *withText(const QString &text) const;
    void click(const QQuickItem *item) const;
    void choose(const QString &name) const; ///< In the list of files.
    void press(const QString &button) const;
    QString title() const;
    QUrl folder() const;
    QStringList names() const; ///< That are listed, folders too, sorted.

    QTemporaryDir m_home;
    TransientSettings m_settings;
    std::unique_ptr<PixpressApp> m_app;
    std::unique_ptr<QQmlApplicationEngine> m_engine;
    QQuickWindow *m_window = nullptr;
    int m_panels = 0;
};

namespace {

QQuickItem *search(QQuickItem *item, const std::function<bool(const QQuickItem *)> &isWanted)
{
    if (!item->isVisible() || isWanted(item))
        return item->isVisible() ? item : nullptr;
    for (QQuickItem *child : item->childItems()) {
        if (QQuickItem *found = search(child, isWanted))
            return found;
    }
    return nullptr;
}

} // namespace

void PanelsTest::initTestCase()
{
    QVERIFY(m_home.isValid());
    qputenv("HOME", m_home.path().toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // a desktop may have a portal
}

void PanelsTest::init()
{
    QVERIFY(QDir(m_home.path()).mkpath(u"Pictures/folder"_s));
    QVERIFY(QDir(m_home.path()).mkpath(u"folder"_s));
    QDir::setCurrent(m_home.path()); // where the folder panel opens
    for (const auto *name : {"DSC_1.JPG", "a.png", "b.webp", "notes.txt"}) {
        QFile file(m_home.filePath(u"Pictures/"_s + QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    m_settings.setValue(u"pixpress_api_key"_s, u"key"_s);
    m_app = std::make_unique<PixpressApp>(
        m_settings, ServiceConfig{.baseURL = QUrl(u"http://127.0.0.1:1"_s), .limits = {}});
    m_engine = makeEngine();
    QVERIFY(m_app->show(*m_engine));
    m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().first());
    QVERIFY(QTest::qWaitForWindowExposed(m_window));
    m_panels = 0;
}

void PanelsTest::cleanup()
{
    m_engine.reset();
    m_app.reset();
}

void PanelsTest::inThePanel(const Act &act)
{
    const auto inside = [this, act] {
        if (QTest::qWaitFor([this] { return item(u"fileDialogListView"_s) != nullptr; })) {
            ++m_panels;
            act();
        }
        if (item(u"fileDialogListView"_s))
            QTest::keyClick(m_window, Qt::Key_Escape);
    };
    QMetaObject::invokeMethod(this, inside, Qt::QueuedConnection);
}

void PanelsTest::pickFiles(const Act &act)
{
    m_app->openFilePicker();
    inThePanel(act);
    QTRY_VERIFY(m_panels == 1 && !m_app->isPanelOpen());
}

void PanelsTest::pickFolder(const Act &act)
{
    inThePanel(act);
    m_app->options()->chooseFolder();
    QCOMPARE(m_panels, 1);
}

QQuickItem *PanelsTest::item(const QString &name) const
{
    return search(m_window->contentItem(),
                  [&](const QQuickItem *item) { return item->objectName() == name; });
}

QQuickItem *PanelsTest::withText(const QString &text) const
{
    return search(m_window->contentItem(), [&](const QQuickItem *item) {
        return item->property("text").toString() == text;
    });
}

void PanelsTest::click(const QQuickItem *item) const
{
    QVERIFY(item);
    const QPointF centre(item->width() / 2, item->height() / 2);
    QTest::mouseClick(m_window, Qt::LeftButton, Qt::NoModifier, item->mapToScene(centre).toPoint());
}

void PanelsTest::choose(const QString &name) const
{
    const auto row = [&] {
        return search(m_window->contentItem(), [&](const QQuickItem *item) {
            return item->property("fileName") == name && item->property("fileModified").isValid();
        });
    };
    QTRY_VERIFY(row());
    click(row());
}

void PanelsTest::press(const QString &button) const
{
    QTRY_VERIFY(withText(button) && withText(button)->isEnabled());
    click(withText(button));
}

QString PanelsTest::title() const
{
    return item(u"dialogTitleBarLabel"_s)->property("text").toString();
}

QUrl PanelsTest::folder() const
{
    const auto *files = item(u"fileDialogListView"_s)->property("model").value<QObject *>();
    return files->property("folder").toUrl();
}

QStringList PanelsTest::names() const
{
    QStringList names;
    for (int index = 0; const auto *row = item(u"fileDialogDelegate%1"_s.arg(index)); ++index)
        names.append(row->property("file").toUrl().fileName());
    names.sort();
    return names;
}

void PanelsTest::filePanel_offersPicturesOfEitherCaseFirst()
{
    pickFiles([this] {
        QCOMPARE(title(), u"Select images to compress (PNG, JPEG, WebP, AVIF)"_s);
        QTRY_COMPARE(names(), QStringList({u"DSC_1.JPG"_s, u"a.png"_s, u"folder"_s}));
        const auto *filters = search(m_window->contentItem(), [](const QQuickItem *item) {
            return item->property("model").toStringList().value(1) == u"All files (*)"_s;
        });
        QVERIFY(filters);
        click(filters);
        QTRY_VERIFY(withText(u"All files (*)"_s));
        click(withText(u"All files (*)"_s));
        QTRY_COMPARE(names(), QStringList({u"DSC_1.JPG"_s, u"a.png"_s, u"b.webp"_s, u"folder"_s,
                                           u"notes.txt"_s}));
    });
}

void PanelsTest::filePanel_isDarkAndHasNoButtonWithoutName()
{
    const QColor background = m_window->color();
    auto *appearance =
        m_engine->singletonInstance<Appearance *>(qmlTypeId("Pixpress", 1, 0, "Appearance"));
    appearance->setPreferences({.dark = true});
    QVERIFY(m_window->color() != background);
    pickFiles([this] {
        const auto *palette =
            item(u"dialogTitleBarLabel"_s)->property("palette").value<QObject *>();
        QCOMPARE(palette->property("window").value<QColor>(), m_window->color());
        const auto *nameless = search(m_window->contentItem(), [](const QQuickItem *item) {
            return item->inherits("QQuickButton") && item->property("text").toString().isEmpty();
        });
        QVERIFY2(!nameless, nameless ? nameless->metaObject()->className() : "");
    });
    appearance->setPreferences({});
}

void PanelsTest::filePanel_opensWhereThePicturesAre()
{
    pickFiles([this] { QCOMPARE(folder(), QUrl::fromLocalFile(m_home.filePath(u"Pictures"_s))); });
    QVERIFY(QDir(m_home.filePath(u"Pictures"_s)).removeRecursively());
    m_panels = 0;
    pickFiles([this] { QCOMPARE(folder(), QUrl::fromLocalFile(m_home.path())); });
}

void PanelsTest::openedFile_isAdded()
{
    pickFiles([this] {
        choose(u"DSC_1.JPG"_s);
        press(u"Open"_s);
    });
    const auto &tasks = m_app->appState()->compressionQueue()->tasks();
    QCOMPARE(tasks.size(), 1);
    QCOMPARE(tasks[0].fileName, u"DSC_1.JPG"_s);
}

void PanelsTest::cancelledFilePanel_addsNothing_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Escape") << true;
    QTest::newRow("Cancel") << false;
}

void PanelsTest::cancelledFilePanel_addsNothing()
{
    QFETCH(bool, byKey);
    pickFiles([this, byKey] {
        choose(u"a.png"_s);
        if (byKey)
            QTest::keyClick(m_window, Qt::Key_Escape);
        else
            press(u"Cancel"_s);
    });
    QVERIFY(m_app->appState()->compressionQueue()->tasks().isEmpty());
}

void PanelsTest::chosenFolder_isTheOneToSaveTo()
{
    pickFolder([this] {
        QCOMPARE(title(), u"Choose where Pixpress should save compressed images"_s);
        choose(u"folder"_s);
        press(u"Select Folder"_s);
    });
    QCOMPARE(m_app->appState()->options().customFolderURL,
             std::optional(QUrl::fromLocalFile(m_home.filePath(u"folder"_s))));
}

void PanelsTest::folderPanel_opensAtTheFolderAndTakesItWithoutSubfolders()
{
    CompressionOptions options;
    options.customFolderURL = QUrl::fromLocalFile(m_home.filePath(u"Pictures/folder"_s));
    m_app->appState()->setOptions(options);
    pickFolder([this] {
        QCOMPARE(folder(), QUrl::fromLocalFile(m_home.filePath(u"Pictures/folder"_s)));
        press(u"Select Folder"_s);
    });
    QCOMPARE(m_app->appState()->options(), options);
}

void PanelsTest::cancelledFolderPanel_keepsTheFolder()
{
    CompressionOptions options;
    options.customFolderURL = QUrl(u"file:///before"_s);
    m_app->appState()->setOptions(options);
    pickFolder([this] { press(u"Cancel"_s); });
    QCOMPARE(m_app->appState()->options(), options);
}

QTEST_MAIN(PanelsTest)

#include "tst_panels.moc"
