// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/appstate.h"

#include <QPointer>
#include <QQmlEngine>
#include <QQuickWindow>

#include <optional>

namespace pixpress {

/// The modal panels in which the user picks files and folders: the desktop's own, through its
/// portal or through Qt, else Qt's. GUI thread only.
class Panels
{
public:
    /// The window that the panels stand before, and the engine that makes them; neither is owned.
    /// Without them every panel is as good as cancelled.
    void setWindow(QQmlEngine *engine, QQuickWindow *window);

    /// Nothing when it is cancelled. Returns when the panel is closed.
    QList<QUrl> pickFiles(const OpenPanelRequest &request);
    /// Opens in `current`, or where the panel opens by itself if that is empty.
    std::optional<QUrl> pickFolder(const QUrl &current);

private:
    /// What the panel of this type has in `result` once it is accepted.
    QVariant run(const QString &type, const QVariantMap &properties, const char *result);

    QPointer<QQmlEngine> m_engine;
    QPointer<QQuickWindow> m_window;
};

} // namespace pixpress
