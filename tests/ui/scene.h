// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "stage.h"
#include "ui/engine.h"

#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>

namespace pixpress::test {

/// The application's window in one of its states.
struct Scene
{
    /// Without a key the window shows the onboarding.
    Scene(const QString &key, QSize size, bool isOffline = false);

    /// The item of this name that is shown first; there must be one.
    QQuickItem *item(const QString &name) const;
    /// Every item that shows, those that pop up included, the outer before the inner.
    QList<QQuickItem *> shown() const;
    void click(const QString &name) const;
    void click(const QQuickItem &item, Qt::MouseButton button) const;
    void closePopups() const;

    Stage stage;
    std::unique_ptr<QQmlApplicationEngine> engine = makeEngine();
    QQuickWindow *window = nullptr;
};

} // namespace pixpress::test
