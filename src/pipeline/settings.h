// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QJsonObject>
#include <QString>
#include <QVariantMap>

#include <mutex>
#include <optional>
#include <thread>

namespace pixpress {

/// The few values that outlive the process: strings and integers by key. Used on one thread, which
/// never waits for the disk but in flush().
class SettingsStore
{
public:
    SettingsStore() = default;
    SettingsStore(const SettingsStore &) = delete;
    SettingsStore &operator=(const SettingsStore &) = delete;
    virtual ~SettingsStore() = default;

    /// An invalid value when there is no such entry.
    virtual QVariant value(const QString &key) const = 0;
    /// One change: either all of it or nothing is stored, after every earlier change, and soon.
    virtual void setValues(const QVariantMap &values) = 0;
    void setValue(const QString &key, const QVariant &value) { setValues({{key, value}}); }
    /// When this returns all changes have reached the disk, if there is one and it can be written.
    virtual void flush() {}
};

/// The user's settings, in a file that is readable by its owner alone, since the API key is among
/// them. Running copies share it: each change is made to what the file holds at that moment, by a
/// thread of its own that waits for other copies. Pending changes are stored before this object
/// goes.
///
/// What cannot be stored is kept until it can, or the process ends, and said on standard error. A
/// file that cannot be read is not replaced; one that holds no settings is put aside first.
class UserSettings : public SettingsStore
{
public:
    /// Applications of different names keep their settings apart.
    explicit UserSettings(const QString &application = QStringLiteral("Pixpress"));

    ~UserSettings() override;

    QVariant value(const QString &key) const override;
    void setValues(const QVariantMap &values) override;
    void flush() override;

private:
    void refresh() const;
    void store();

    const QString m_path;
    mutable std::mutex m_mutex;   ///< For the three below.
    mutable QJsonObject m_stored; ///< As last read or written.
    QJsonObject m_unstored;       ///< What is newer.
    bool m_isStoring = false;     ///< The writer looks for changes again before it ends.
    QString m_complaint;          ///< The last one, which is not repeated. The writer's.
    std::thread m_writer;
};

/// Settings that end with the process, for a run that is to leave no trace.
class TransientSettings : public SettingsStore
{
public:
    QVariant value(const QString &key) const override { return m_values.value(key); }
    void setValues(const QVariantMap &values) override { m_values.insert(values); }

private:
    QVariantMap m_values;
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
