// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Drives the application's window through its states and writes a picture of each:
//     pixpress-screenshots FOLDER [WIDTH HEIGHT]

#include "stage.h"
#include "ui/application.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QPalette>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

void qml_register_types_Pixpress();

namespace {

QPalette palette(bool dark)
{
    return dark ? QPalette(QColor(0x323232), QColor(0x1E1E1E))
                : QPalette(QColor(0xECECEC), QColor(0xECECEC));
}

class Camera
{
public:
    Camera(const QString &folder, QSize size, bool dark)
        : m_folder(folder), m_size(size), m_scheme(dark ? u"dark"_s : u"light"_s)
    {
        QGuiApplication::setPalette(palette(dark));
    }

    void takeAll()
    {
        onboarding();
        emptyWindow();
        options();
        list();
        settings();
        quota();
    }

private:
    struct Scene
    {
        explicit Scene(const QString &key, QSize size)
        {
            stage.start(key);
            if (!stage.app()->show(engine))
                qFatal("There is no window.");
            window = qobject_cast<QQuickWindow *>(engine.rootObjects().first());
            window->resize(size);
            if (!QTest::qWaitForWindowExposed(window))
                qFatal("The window does not show.");
        }

        QQuickItem *item(const QString &name) const
        {
            auto *found = window->findChild<QQuickItem *>(name);
            if (!found)
                qFatal("There is no \"%s\".", qUtf8Printable(name));
            return found;
        }

        Stage stage;
        QQmlApplicationEngine engine;
        QQuickWindow *window = nullptr;
    };

    /// Waits until nothing moves any more: the same picture twice in a row, a while apart.
    void take(const Scene &scene, const QString &name, bool isMoving = false) const
    {
        QImage image;
        QImage before;
        do {
            before = image;
            QTest::qWait(250);
            image = scene.window->grabWindow();
        } while (!isMoving && image != before);
        const QString path = QDir(m_folder).filePath(u"%1-%2.png"_s.arg(name, m_scheme));
        if (!image.save(path))
            qFatal("%s cannot be written.", qUtf8Printable(path));
    }

    void onboarding() const
    {
        Scene scene({}, m_size);
        take(scene, u"onboarding"_s, true); // the text cursor blinks
        scene.stage.acceptOnly(u"good"_s);
        scene.item(u"key"_s)->setProperty("text", u"a wrong key"_s);
        QTest::keyClick(scene.window, Qt::Key_Return);
        if (!QTest::qWaitFor([&] { return scene.item(u"error"_s)->isVisible(); }))
            qFatal("No error shows.");
        take(scene, u"onboarding-error"_s, true);
    }

    void emptyWindow() const
    {
        Scene scene(u"key"_s, m_size);
        take(scene, u"empty"_s);
        QMimeData data;
        data.setUrls({scene.stage.file(u"a.png"_s)});
        QDragEnterEvent enter(QPoint(m_size.width() / 2, m_size.height() / 2), Qt::CopyAction,
                              &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(scene.window, &enter);
        take(scene, u"empty-drag"_s);
    }

    void options() const
    {
        Scene scene(u"key"_s, m_size);
        OptionsEditor &options = *scene.stage.app()->options();
        options.setResizeEnabled(true);
        options.setResizeMode(0);
        options.setWidth(u"1200"_s);
        options.setConvertEnabled(true);
        options.setConvertFormat(1);
        options.setDestination(2);
        take(scene, u"options"_s);
        auto *form = scene.item(u"form"_s);
        form->setProperty("contentY", form->property("contentHeight").toReal() - form->height());
        take(scene, u"options-end"_s);
    }

    void list() const
    {
        Scene scene(u"key"_s, m_size);
        Stage &stage = scene.stage;
        const auto add = [&](const QUrl &url) { stage.app()->handleDrop({url}); };
        const auto settled = [&](qsizetype ended) {
            const auto &tasks = stage.app()->appState()->compressionQueue()->tasks();
            if (!QTest::qWaitFor([&] {
                    return std::ranges::count_if(tasks, [](const CompressionTask &task) {
                               return hasEnded(task.status);
                           }) == ended;
                }))
                qFatal("A task does not end.");
        };
        stage.answerWith(387'812, 143'907);
        add(stage.sample(u"lake at dusk.jpg"_s));
        settled(1);
        stage.answerWith(20'000, 21'000);
        add(stage.file(u"already tiny.png"_s, 20'000));
        settled(2);
        stage.failWith(415, u"The file is not a PNG, JPEG, WebP or AVIF image."_s);
        add(stage.file(u"a very long name of a picture that somebody took on a long journey by the "
                       u"sea and never shortened.jpeg"_s));
        settled(3);
        stage.answerWith(419'834, 130'000);
        stage.hold();
        add(stage.sample(u"paper balloon.png"_s));
        add(stage.sample(u"city by night.avif"_s));
        if (!QTest::qWaitFor([&] { return stage.server.waiting() == 2; }))
            qFatal("The uploads do not arrive.");
        stage.releaseOne();
        if (!QTest::qWaitFor([&] { return stage.server.requests.last().target != "/shrink"; }))
            qFatal("The output is not asked for.");
        stage.app()->handleDrop({stage.sample(u"marbled ink.webp"_s),
                                 stage.sample(u"lighthouse.jpeg"_s),
                                 stage.sample(u"island map.png"_s)});
        take(scene, u"list"_s, true);
    }

    void settings() const
    {
        Scene scene(u"key"_s, m_size);
        scene.stage.setCount(376);
        scene.stage.app()->appState()->setShowSettings(true);
        if (!QTest::qWaitFor([&] { return scene.window->findChild<QQuickItem *>(u"tabs"_s); }))
            qFatal("There are no settings.");
        const QStringList names{u"settings-key"_s, u"settings-quota"_s, u"settings-about"_s};
        for (int index = 0; const QString &name : names) {
            scene.item(u"tabs"_s)->setProperty("currentIndex", index++);
            take(scene, name, true);
        }
    }

    void quota() const
    {
        Scene scene(u"key"_s, m_size);
        for (const int count : {0, 376, 451, 520}) {
            scene.stage.setCount(count);
            take(scene, u"quota-%1"_s.arg(count));
        }
    }

    const QString m_folder;
    const QSize m_size;
    const QString m_scheme;
};

} // namespace

int main(int argc, char *argv[])
{
    Application application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2 && arguments.size() != 4) {
        qCritical("Usage: pixpress-screenshots FOLDER [WIDTH HEIGHT]");
        return 2;
    }
    const QSize size =
        arguments.size() == 4 ? QSize(arguments[2].toInt(), arguments[3].toInt()) : QSize(920, 620);
    if (!QDir().mkpath(arguments[1]))
        qFatal("%s cannot be made.", qUtf8Printable(arguments[1]));
    qml_register_types_Pixpress();
    for (const bool dark : {false, true})
        Camera(arguments[1], size, dark).takeAll();
    return 0;
}
