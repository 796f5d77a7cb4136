// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scenes.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QTest>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

void wait(const char *what, const std::function<bool()> &condition)
{
    if (!QTest::qWaitFor(condition, 30'000))
        qFatal("It never came: %s", what);
}

QQuickItem *firstOf(const Scene &scene, const char *type, const QQuickItem *below = nullptr)
{
    for (QQuickItem *item : scene.shown()) {
        if (item->inherits(type) && (!below || below->isAncestorOf(item)))
            return item;
    }
    qFatal("There is no %s.", type);
}

void onboarding(QSize size, const Visit &visit)
{
    Scene scene({}, size);
    const auto shows = [&] {
        return std::ranges::any_of(
            scene.shown(), [](const QQuickItem *item) { return item->objectName() == "error"_L1; });
    };
    visit(scene, u"onboarding"_s, Rest::never);
    scene.stage.acceptOnly(u"good"_s);
    scene.item(u"key"_s)->setProperty("text", u"a wrong key"_s);
    scene.click(u"getStarted"_s);
    wait("the service's refusal", shows);
    visit(scene, u"onboarding-error"_s, Rest::never);
    scene.stage.breakConnections();
    scene.click(u"getStarted"_s);
    wait("the connection's end", shows);
    visit(scene, u"onboarding-failure"_s, Rest::never);
}

void emptyWindow(QSize size, const Visit &visit)
{
    Scene scene(u"key"_s, size);
    visit(scene, u"empty"_s, Rest::comes);
    for (int number = 1; const QQuickItem *item : scene.shown()) {
        if (!item->inherits("QQuickMenuBarItem"))
            continue;
        QMetaObject::invokeMethod(item->property("menu").value<QObject *>(), "open");
        visit(scene, u"menu-%1"_s.arg(number++), Rest::comes);
        scene.closePopups();
    }
    scene.click(u"sidebarToggle"_s);
    visit(scene, u"without-sidebar"_s, Rest::comes);
    scene.click(u"sidebarToggle"_s);
    QMimeData data;
    data.setUrls({scene.stage.file(u"a.png"_s)});
    QDragEnterEvent enter(QPoint(size.width() / 2, size.height() / 2), Qt::CopyAction, &data,
                          Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(scene.window, &enter);
    visit(scene, u"empty-drag"_s, Rest::comes);
}

void options(QSize size, const Visit &visit)
{
    Scene scene(u"key"_s, size);
    OptionsEditor &options = *scene.stage.app()->options();
    options.setResizeEnabled(true);
    options.setResizeMode(0);
    options.setWidth(u"1200"_s);
    options.setConvertEnabled(true);
    options.setConvertFormat(1);
    options.setDestination(2);
    visit(scene, u"options"_s, Rest::comes);
    auto *picker = firstOf(scene, "QQuickComboBox", scene.item(u"resizeMode"_s));
    scene.click(*picker, Qt::LeftButton);
    visit(scene, u"picker"_s, Rest::comes);
    scene.closePopups();
    for (const ResizeMode mode : {ResizeMode::fit, ResizeMode::cover, ResizeMode::thumb}) {
        options.setResizeMode(static_cast<int>(mode));
        visit(scene, u"options-"_s + rawValue(mode), Rest::comes);
    }
    auto *width = firstOf(scene, "QQuickTextField", scene.item(u"resizeWidth"_s));
    width->setProperty("text", u"1,200"_s);
    visit(scene, u"options-refused"_s, Rest::comes);
    width->setProperty("text", u"1200"_s);
    scene.item(u"background"_s)->forceActiveFocus(Qt::TabFocusReason); // larger text scrolls to it
    scene.click(u"background"_s);
    visit(scene, u"colours"_s, Rest::never);
    scene.item(u"hex"_s)->setProperty("text", u"orange"_s);
    visit(scene, u"colours-refused"_s, Rest::never);
    scene.closePopups();
    auto *form = scene.item(u"form"_s);
    form->setProperty("contentY", form->property("contentHeight").toReal() - form->height());
    visit(scene, u"options-end"_s, Rest::comes);
    scene.stage.pickedFolder = QUrl(u"file:///home/somebody/Pictures/of%20the%20summer"_s);
    options.chooseFolder();
    visit(scene, u"options-folder"_s, Rest::comes);
    options.setDestination(static_cast<int>(OutputDestination::overwrite));
    visit(scene, u"options-overwrite"_s, Rest::comes);
}

void list(QSize size, const Visit &visit)
{
    Scene scene(u"key"_s, size);
    Stage &stage = scene.stage;
    const auto add = [&](const QUrl &url) { stage.app()->handleDrop({url}); };
    const auto settled = [&](qsizetype ended) {
        const auto &tasks = stage.app()->appState()->compressionQueue()->tasks();
        wait("a task's end", [&] {
            return std::ranges::count_if(tasks, [](const CompressionTask &task) {
                       return hasEnded(task.status);
                   }) == ended;
        });
    };
    const auto names = [&] {
        QList<QQuickItem *> names;
        for (QQuickItem *item : scene.shown()) {
            if (item->objectName() == "fileName"_L1)
                names.append(item);
        }
        std::ranges::sort(names, {}, [](auto *name) { return name->mapToScene({}).y(); });
        return names;
    };
    const auto thumbnails = [&] { // of the samples: the other files are no pictures
        wait("the thumbnails", [&] {
            return std::ranges::all_of(scene.shown(), [](const QQuickItem *item) {
                const QString name = item->property("url").toUrl().fileName();
                return !item->inherits("pixpress::ThumbnailItem") ||
                       item->property("ready").toBool() || name == "already tiny.png"_L1 ||
                       name.startsWith("a very long"_L1);
            });
        });
    };
    stage.answerWith(387'812, 143'907);
    add(stage.sample(u"lake at dusk.jpg"_s));
    settled(1);
    stage.answerWith(20'000, 21'000);
    add(stage.file(u"already tiny.png"_s, 20'000));
    settled(2);
    stage.failWith(415, failure);
    add(stage.file(u"a very long name of a picture that somebody took on a long journey by the "
                   u"sea and never shortened.jpeg"_s));
    settled(3);
    wait("their rows", [&] { return names().size() == 3; });
    thumbnails();
    visit(scene, u"list-ended"_s, Rest::never);
    stage.answerWith(419'834, 130'000);
    stage.hold();
    add(stage.sample(u"paper balloon.png"_s));
    add(stage.sample(u"city by night.avif"_s));
    wait("both uploads", [&] { return stage.server.waiting() == 2; });
    stage.releaseOne();
    wait("the request for the output",
         [&] { return stage.server.requests.last().target != "/shrink"; });
    stage.app()->handleDrop({stage.sample(u"marbled ink.webp"_s),
                             stage.sample(u"lighthouse.jpeg"_s),
                             stage.sample(u"island map.png"_s)});
    wait("the rows of the others", [&] { return names().size() >= 7; });
    thumbnails();
    visit(scene, u"list"_s, Rest::never);
    for (const auto &[row, name] : {std::pair(0, u"menu-completed"_s), {2, u"menu-failed"_s}}) {
        scene.click(*names()[row], Qt::RightButton);
        visit(scene, name, Rest::never);
        scene.closePopups();
    }
}

void settings(QSize size, const Visit &visit)
{
    Scene scene(u"key"_s, size);
    const auto select = [&](int tab) { scene.item(u"tabs"_s)->setProperty("currentIndex", tab); };
    const auto reports = [&](const QString &name) {
        wait("the outcome of the check",
             [&] { return !scene.item(u"keyTab"_s)->property("isValidating").toBool(); });
        visit(scene, name, Rest::never);
    };
    scene.stage.setCount(376);
    scene.stage.app()->appState()->setShowSettings(true);
    wait("the settings", [&] {
        return std::ranges::any_of(
            scene.shown(), [](const QQuickItem *item) { return item->objectName() == "tabs"_L1; });
    });
    for (int tab = 0; const QString &name : {u"key"_s, u"quota"_s, u"about"_s}) {
        select(tab++);
        visit(scene, u"settings-"_s + name, Rest::never);
    }
    select(0);
    scene.click(u"saveKey"_s);
    reports(u"settings-saved"_s);
    scene.click(u"validate"_s);
    reports(u"settings-valid"_s);
    scene.stage.acceptOnly(u"good"_s);
    scene.click(u"validate"_s);
    reports(u"settings-invalid"_s);
    scene.stage.breakConnections();
    scene.click(u"validate"_s);
    reports(u"settings-failure"_s);
    scene.click(*scene.item(u"apiKey"_s), Qt::RightButton);
    visit(scene, u"menu-edit"_s, Rest::never);
}

void offline(QSize size, const Visit &visit)
{
    Scene scene({}, size, true);
    visit(scene, u"offline"_s, Rest::comes);
    auto *menu = firstOf(scene, "QQuickMenuBarItem");
    QMetaObject::invokeMethod(menu->property("menu").value<QObject *>(), "open");
    visit(scene, u"offline-menu"_s, Rest::comes);
    scene.closePopups();
    scene.stage.app()->appState()->setShowSettings(true);
    wait("the about page", [&] {
        return std::ranges::any_of(scene.shown(), [](const QQuickItem *item) {
            return item->objectName() == "version"_L1;
        });
    });
    visit(scene, u"offline-about"_s, Rest::never);
}

void quota(QSize size, const Visit &visit)
{
    Scene scene(u"key"_s, size);
    for (const int count : {0, 376, 451, 520}) {
        scene.stage.setCount(count);
        visit(scene, u"quota-%1"_s.arg(count), Rest::comes);
    }
}

} // namespace

void visitScenes(QSize size, const Visit &visit)
{
    onboarding(size, visit);
    emptyWindow(size, visit);
    options(size, visit);
    list(size, visit);
    settings(size, visit);
    quota(size, visit);
    offline(size, visit);
}

} // namespace pixpress::test
