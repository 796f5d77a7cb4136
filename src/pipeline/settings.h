// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QVariant>

#include <optional>

namespace pixpress {

/// The few values that outlive the process: strings and integers by key. Used on one thread.
class SettingsStore
{
public:
    SettingsStore() = default;
    SettingsStore(const SettingsStore &) = delete;
    SettingsStore &operator=(const SettingsStore &) = delete;
    virtual ~SettingsStore() = default;

    /// An invalid value when there is no such entry.
    virtual QVariant value(const QString &key) const = 0;
    /// When this returns the change has reached the disk, if there is one and it can be written.
    virtual void setValue(const QString &key, const QVariant &value) = 0;
};

/// The user's settings, in a file that is readable by its owner alone, since the API key is among
/// them. Running copies share it: each change is made to what the file holds at that moment, and
/// waits for a copy that is writing, for a few seconds at most.
///
/// What cannot be stored is kept until it can, or the process ends, and said on standard error. A
/// file that cannot be read is not replaced; one that holds no settings is put aside first.
class UserSettings : public SettingsStore
{
public:
    /// Applications of different names keep their settings apart.
    explicit UserSettings(const QString &application = QStringLiteral("Pixpress"));

    QVariant value(const QString &key) const override;
    void setValue(const QString &key, const QVariant &value) override;

private:
    void refresh() const;

    const QString m_path;
    mutable QJsonObject m_stored; ///< As last read.
    QJsonObject m_unstored;
    QString m_complaint; ///< The last one, which is not repeated.
};

/// Settings that end with the process, for a run that is to leave no trace.
class TransientSettings : public SettingsStore
{
public:
    QVariant value(const QString &key) const override { return m_values.value(key); }
    void setValue(const QString &key, const QVariant &value) override { m_values[key] = value; }

private:
    QHash<QString, QVariant> m_values;
};

/// Despite its name this reads the settings store: the key is kept there in plain form.
namespace KeychainHelper {

/// The key's name among the settings.
extern const QString apiKeyEntry;

/// The stored API key, unchanged; none when it is missing or empty.
std::optional<QString> loadAPIKey(const SettingsStore &settings);

void saveAPIKey(SettingsStore &settings, const QString &key);

} // namespace KeychainHelper

} // namespace pixpress
