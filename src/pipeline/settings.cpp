// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settings.h"

#include "pipeline/settingsfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// In the platform's folder for settings.
QString pathOf(const QString &application)
{
    const QSettings place(QSettings::IniFormat, QSettings::UserScope, u"Pixpress"_s, application);
    const QFileInfo ini(place.fileName());
    return ini.path() + u'/' + application + u".json"_s;
}

} // namespace

UserSettings::UserSettings(const QString &application) : m_path(pathOf(application))
{
    if (QFile file(m_path); file.exists() && QFileInfo(file).isFile())
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    if (const auto entries = settingsfile::read(m_path); !entries)
        qWarning("The settings in \"%s\" cannot be read: %s", qUtf8Printable(m_path),
                 qUtf8Printable(entries.error()));
}

/// Takes over what other copies have stored. What cannot be read now was perhaps read before.
void UserSettings::refresh() const
{
    if (auto entries = settingsfile::read(m_path))
        m_stored = *std::move(entries);
}

QVariant UserSettings::value(const QString &key) const
{
    if (const auto unstored = m_unstored.constFind(key); unstored != m_unstored.constEnd())
        return unstored->toVariant();
    refresh();
    return m_stored.value(key).toVariant();
}

void UserSettings::setValue(const QString &key, const QVariant &value)
{
    m_unstored.insert(key, QJsonValue::fromVariant(value));
    auto stored = settingsfile::merge(m_path, m_unstored);
    if (stored) {
        m_stored = *std::move(stored);
        m_unstored = {};
        m_complaint.clear();
    } else if (m_complaint != stored.error()) {
        m_complaint = stored.error();
        qWarning("The settings could not be stored in \"%s\": %s", qUtf8Printable(m_path),
                 qUtf8Printable(m_complaint));
    }
}

namespace KeychainHelper {

const QString apiKeyEntry = u"pixpress_api_key"_s;

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
