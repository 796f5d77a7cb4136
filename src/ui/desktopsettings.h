// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QVariant>

#include <optional>

class QDBusVariant;

namespace pixpress {

/// The preferences of the desktop that this version of Qt does not tell of itself. They arrive
/// after a moment, and again whenever the person changes them. GUI thread only.
class DesktopSettings : public QObject
{
    Q_OBJECT

public:
    DesktopSettings();

    /// None when the desktop states no preference.
    std::optional<bool> prefersDark() const { return m_prefersDark; }
    bool reducedMotion() const { return m_reducedMotion; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void onSettingChanged(const QString &group, const QString &name, const QDBusVariant &value);

private:
    void take(const QString &group, const QString &name, const QVariant &value);

    std::optional<bool> m_prefersDark;
    bool m_reducedMotion = false;
};

} // namespace pixpress
