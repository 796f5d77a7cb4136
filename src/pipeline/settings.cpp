// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settings.h"

#include <QDir>
#include <QFile>
#include <QFileDevice>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

bool readEntries(QIODevice &device, QSettings::SettingsMap &entries)
{
    const QByteArray content = device.readAll();
    const QJsonDocument json = QJsonDocument::fromJson(content);
    entries = json.object().toVariantMap();
    return json.isObject() || content.isEmpty();
}

/// Where QSettings' own formats would replace a good file by an empty one: QSaveFile of Qt 6.4 does
/// not notice a full disk while it commits (it does not look at what its flush returned).
bool writeEntries(QIODevice &device, const QSettings::SettingsMap &entries)
{
    const QByteArray content = QJsonDocument(QJsonObject::fromVariantMap(entries)).toJson();
    auto *const file = qobject_cast<QFileDevice *>(&device);
    return device.write(content) == content.size() && (!file || file->flush());
}

QSettings::Format checkedFormat()
{
    static const QSettings::Format format =
        QSettings::registerFormat(u"json"_s, readEntries, writeEntries);
    return format;
}

const QString apiKeyEntry = u"pixpress_api_key"_s;

} // namespace

UserSettings::UserSettings(const QString &application)
    : m_settings(checkedFormat(), QSettings::UserScope, u"Pixpress"_s, application)
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
