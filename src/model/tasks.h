// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"

#include <QDateTime>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <variant>

namespace pixpress {

/// The outcome of a completed task.
struct CompressionResult
{
    qint64 originalSize = 0;   ///< Bytes of the input, as the service reported them.
    qint64 compressedSize = 0; ///< Bytes that were fetched, not those that were announced.
    QUrl outputURL = {};       ///< The file that was written.
    QString inputType = {};    ///< MIME type, as the service reported it.
    QString outputType = {};   ///< MIME type, as the service reported it.
    qint64 width = 0;          ///< Pixels, as the service reported them.
    qint64 height = 0;         ///< Pixels, as the service reported them.
    QDateTime timestamp = {};  ///< When the result was made, in local time.

    bool operator==(const CompressionResult &) const = default;

    /// Whole percent saved, truncated toward zero; negative when the output is larger, 0 when the
    /// original size is not known. Sizes so absurd that it would not fit end the process.
    qint64 savingsPercentage() const;
};

/// The cases of TaskStatus. Only the two that end a run carry data.
namespace status {
// clang-format off
struct Completed { CompressionResult result; bool operator==(const Completed &) const = default; };
struct Failed { QString error; bool operator==(const Failed &) const = default; };
struct Pending { bool operator==(const Pending &) const = default; };
struct Uploading { bool operator==(const Uploading &) const = default; };
struct Compressing { bool operator==(const Compressing &) const = default; };
struct Downloading { bool operator==(const Downloading &) const = default; };
// clang-format on
} // namespace status

/// Where a task stands: pending → uploading (its file is read) → compressing (it is sent and the
/// answer awaited) → downloading (the output is fetched and written) → completed; any failure
/// leads to failed with the sentence that its row shows, and a retry back to pending.
using TaskStatus = std::variant<status::Completed, status::Failed, status::Pending,
                                status::Uploading, status::Compressing, status::Downloading>;

/// Whether the status is uploading, compressing or downloading.
bool isActive(const TaskStatus &status);

/// Whether the status is completed or failed.
bool hasEnded(const TaskStatus &status);

/// One file's compression, from being added until it has succeeded or failed.
struct CompressionTask
{
    /// Reads the file's size; never fails, a file that is not there has the size 0.
    CompressionTask(const QUrl &sourceURL, const CompressionOptions &options);

    QUuid id;
    QUrl sourceURL;
    QString fileName;    ///< Last path component of sourceURL, extension included.
    qint64 originalSize; ///< Bytes on disk when the task was made; 0 when not readable.
    TaskStatus status = status::Pending{};
    CompressionOptions options;
    QDateTime addedAt; ///< In UTC: the time zone costs a system call.

    bool operator==(const CompressionTask &) const = default;
};

} // namespace pixpress
