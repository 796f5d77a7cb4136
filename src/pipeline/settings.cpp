// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settings.h"

#include "pipeline/settingsfile.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <system_error>
#include <utility>

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
    if (auto entries = settingsfile::read(m_path))
        m_stored = *std::move(entries);
    else
        qWarning("The settings in \"%s\" cannot be read: %s", qUtf8Printable(m_path),
                 qUtf8Printable(entries.error()));
}

UserSettings::~UserSettings()
{
    flush();
}

/// Takes over what other copies have stored. What cannot be read now was perhaps read before.
void UserSettings::refresh() const
{
    if (auto entries = settingsfile::read(m_path, {}))
        m_stored = *std::move(entries);
}

QVariant UserSettings::value(const QString &key) const
{
    const std::lock_guard lock(m_mutex);
    if (const auto unstored = m_unstored.constFind(key); unstored != m_unstored.constEnd())
        return unstored->toVariant();
    refresh();
    return m_stored.value(key).toVariant();
}

void UserSettings::setValues(const QVariantMap &values)
{
    std::unique_lock lock(m_mutex);
    for (const auto &[key, value] : values.asKeyValueRange())
        m_unstored.insert(key, QJsonValue::fromVariant(value));
    if (std::exchange(m_isStoring, true))
        return;
    flush(); // that writer has nothing left to do
    try {
        m_writer = std::thread([this] { store(); });
    } catch (const std::system_error &) { // There can be no more threads.
        lock.unlock();
        store();
    }
}

void UserSettings::flush()
{
    if (m_writer.joinable())
        m_writer.join();
}

/// On the writer's thread. Stores what is pending, until nothing new has come meanwhile.
void UserSettings::store()
{
    std::unique_lock lock(m_mutex);
    QJsonObject changes;
    while (m_unstored != changes && !m_unstored.isEmpty()) {
        changes = m_unstored;
        lock.unlock();
        auto stored = settingsfile::merge(m_path, changes);
        if (!stored && m_complaint != stored.error())
            qWarning("The settings could not be stored in \"%s\": %s", qUtf8Printable(m_path),
                     qUtf8Printable(stored.error()));
        m_complaint = stored ? QString() : stored.error();
        lock.lock();
        if (!stored)
            continue;
        m_stored = *std::move(stored);
        for (auto change = changes.begin(); change != changes.end(); ++change) {
            if (m_unstored.value(change.key()) == change.value()) // not changed again meanwhile
                m_unstored.remove(change.key());
        }
    }
    m_isStoring = false;
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
