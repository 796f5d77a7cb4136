// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QJsonObject>
#include <QString>

#include <expected>

/// The file of the settings: a JSON object. Errors are sentences for standard error.
namespace pixpress::settingsfile {

/// What the file holds. No entries when there is no file, or none that holds settings.
std::expected<QJsonObject, QString> read(const QString &path);

/// Adds or replaces entries, alone among all processes that do: waits up to 5 seconds for its turn.
/// Returns what the file holds then. A file that holds something else is kept beside the new one,
/// as NAME.unreadable. On an error the file is as it was.
std::expected<QJsonObject, QString> merge(const QString &path, const QJsonObject &changes);

} // namespace pixpress::settingsfile
