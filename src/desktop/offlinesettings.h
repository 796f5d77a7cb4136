// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/settings.h"

namespace pixpress {

/// The settings of the application with the service built in, apart from those of the other. The
/// API key is made anew for each process, known to nobody else, never stored, and cannot be
/// replaced: a key typed by a person would be easier to guess, and would stop the tasks that run
/// with the old one.
class OfflineSettings : public SettingsStore
{
public:
    OfflineSettings();

    QString key() const { return m_key; }

    QVariant value(const QString &key) const override;
    void setValue(const QString &key, const QVariant &value) override;

private:
    UserSettings m_stored;
    const QString m_key;
};

} // namespace pixpress
