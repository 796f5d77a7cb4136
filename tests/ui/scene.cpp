// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "scene.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

void addShown(QQuickItem *item, QList<QQuickItem *> &items)
{
    if (!item->isVisible())
        return;
    items.append(item);
    for (QQuickItem *child : item->childItems())
        addShown(child, items);
}

} // namespace

Scene::Scene(const QString &key, QSize size, bool isOffline)
{
    if (isOffline)
        stage.startOffline();
    else
        stage.start(key);
    if (!stage.app()->show(*engine))
        qFatal("There is no window.");
    window = qobject_cast<QQuickWindow *>(engine->rootObjects().first());
    window->resize(size);
    if (!QTest::qWaitForWindowExposed(window))
        qFatal("The window does not show.");
}

QList<QQuickItem *> Scene::shown() const
{
    QList<QQuickItem *> items;
    addShown(window->contentItem(), items);
    return items;
}

QQuickItem *Scene::item(const QString &name) const
{
    for (QQuickItem *item : shown()) {
        if (item->objectName() == name)
            return item;
    }
    qFatal("There is no \"%s\".", qUtf8Printable(name));
}

void Scene::click(const QString &name) const
{
    click(*item(name), Qt::LeftButton);
}

void Scene::click(const QQuickItem &item, Qt::MouseButton button) const
{
    window->grabWindow(); // by which all is in its place
    const QPointF middle(item.width() / 2, item.height() / 2);
    QTest::mouseClick(window, button, {}, item.mapToScene(middle).toPoint());
}

void Scene::closePopups() const
{
    for (const QQuickItem *item : shown()) {
        if (item->inherits("QQuickPopupItem"))
            QMetaObject::invokeMethod(item->parent(), "close");
    }
}

} // namespace pixpress::test
