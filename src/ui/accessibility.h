// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QQuickItem>

namespace pixpress {

/// Tells assistive technology what the toolkit does not tell by itself. Nothing happens while there
/// is none. GUI thread only.
class Accessibility : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// Has the name of this item read out, wherever the keyboard is. The item shows, and has the
    /// role of a notification.
    Q_INVOKABLE static void announce(QQuickItem *item);
    /// The keyboard has come to this item, which does not have the focus: its control keeps that,
    /// as a list of choices leaves it to the button that has opened it.
    Q_INVOKABLE static void moveTo(QQuickItem *item);
};

} // namespace pixpress
