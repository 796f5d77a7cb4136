// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/descriptor.h"

#include <QJsonObject>
#include <QString>

#include <chrono>
#include <expected>

/// The file of the settings: a JSON object, in a file that is readable by its owner alone. Errors
/// are sentences for standard error. Any thread.
namespace pixpress::settingsfile {

/// What the file holds. No entries when there is no file, or none that holds settings. Waits so
/// long for a copy of the program that is writing it, and then fails.
std::expected<QJsonObject, QString> read(const QString &path,
                                         std::chrono::milliseconds wait = Descriptor::patience);

/// Adds or replaces entries, alone among all processes that do, for which it waits as
/// Descriptor::lock() does. Returns what the file holds then, when it is on the disk. A file that
/// holds something else is kept beside the new one, as NAME.unreadable. On an error the entries are
/// as they were.
///
/// Whenever the process is killed or the power fails, the file holds the old entries or the new
/// ones, and no other file holds any of them.
std::expected<QJsonObject, QString> merge(const QString &path, const QJsonObject &changes);

} // namespace pixpress::settingsfile
