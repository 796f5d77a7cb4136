// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QVariant>

#include <optional>

class QDBusPendingCallWatcher;
class QDBusVariant;

namespace pixpress {

/// What the person prefers of every window, as far as the desktop states it.
struct DesktopPreferences
{
    std::optional<bool> dark = std::nullopt;
    bool reducedMotion = false;
    bool highContrast = false;
    double textScale = 1; ///< The factor on all text; what is in the screen's scale is not in it.

    bool operator==(const DesktopPreferences &) const = default;
};

/// The preferences that this version of Qt does not tell of itself. They arrive after a moment, and
/// again whenever the person changes them. GUI thread only.
class DesktopSettings : public QObject
{
    Q_OBJECT

public:
    DesktopSettings();

    DesktopPreferences preferences() const;

Q_SIGNALS:
    void changed(); ///< Not emitted for settings that nothing here depends on.

private Q_SLOTS:
    void onSettingChanged(const QString &group, const QString &name, const QDBusVariant &value);

private:
    void takeAll(const QDBusPendingCallWatcher &answer);
    bool take(const QString &group, const QString &name, const QVariant &value);

    DesktopPreferences m_preferences;
    bool m_gnomeHighContrast = false; ///< Its older setting; either counts.
};

} // namespace pixpress
