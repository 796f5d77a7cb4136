// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/desktopsettings.h"

namespace pixpress {

// Here the palette tells of dark and light, and nothing of movement.
DesktopSettings::DesktopSettings() = default;

void DesktopSettings::onSettingChanged(const QString &, const QString &, const QDBusVariant &) {}

void DesktopSettings::take(const QString &, const QString &, const QVariant &) {}

} // namespace pixpress
