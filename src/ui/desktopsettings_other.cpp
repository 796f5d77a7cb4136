// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/desktopsettings.h"

namespace pixpress {

// Here the palette tells of dark and light, and nothing of the rest.
DesktopSettings::DesktopSettings() = default;

DesktopPreferences DesktopSettings::preferences() const
{
    return m_preferences;
}

void DesktopSettings::onSettingChanged(const QString &, const QString &, const QDBusVariant &) {}

void DesktopSettings::takeAll(const QDBusPendingCallWatcher &) {}

bool DesktopSettings::take(const QString &, const QString &, const QVariant &)
{
    return false;
}

} // namespace pixpress
