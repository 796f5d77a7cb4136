// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

const QString apiKeyEntry = u"pixpress_api_key"_s;

} // namespace

UserSettings::UserSettings(const QString &application)
    : m_settings(QSettings::NativeFormat, QSettings::UserScope, u"Pixpress"_s, application)
{
    m_settings.setFallbacksEnabled(false);
    if (QFile file(m_settings.fileName()); file.exists())
        file.setPermissions(ownerOnly);
}

QVariant UserSettings::value(const QString &key) const
{
    return m_settings.value(key);
}

void UserSettings::setValue(const QString &key, const QVariant &value)
{
    // QSettings writes with the permissions that the file has, so that it must exist with the right
    // ones before: at no moment is there a file with the key that others can read.
    QFile file(m_settings.fileName());
    QDir().mkpath(QFileInfo(file).absolutePath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly))
        file.setPermissions(ownerOnly);
    file.close();

    m_settings.setValue(key, value);
    m_settings.sync();
}

namespace KeychainHelper {

std::optional<QString> loadAPIKey(const SettingsStore &settings)
{
    const QString key = settings.value(apiKeyEntry).toString();
    return key.isEmpty() ? std::nullopt : std::optional(key);
}

void saveAPIKey(SettingsStore &settings, const QString &key)
{
    settings.setValue(apiKeyEntry, key);
}

} // namespace KeychainHelper

} // namespace pixpress
