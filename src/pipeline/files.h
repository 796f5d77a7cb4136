// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <expected>

/// What the queue does on the disk, on the calling thread. Errors are sentences for the user.
/// Success means that what was written is on the disk, with its name.
namespace pixpress {

/// A picture as a task has read it.
struct SourceFile
{
    QByteArray content;
    QByteArray digest; ///< Of the content, when the output is to replace it; else empty.
};

/// Reads the source of a task with these options. Fails also when it is certain already that its
/// output cannot be written: better before a compression is paid for.
std::expected<SourceFile, QString> readSource(const QUrl &source,
                                              const CompressionOptions &options);

/// The whole content of a regular file; pipes, devices and folders are refused.
std::expected<QByteArray, QString> readFile(const QUrl &source);

/// Writes the output of a source file to where the options say; returns where that is. Copies get
/// the first free name: they never replace a file, not even one that appears meanwhile. What
/// replaces a file is written as by writeFile(); the source itself only when it still has the
/// content of `digest`, unless that is empty.
std::expected<QUrl, QString> writeOutput(const QUrl &source, const CompressionOptions &options,
                                         const QByteArray &bytes, const QByteArray &digest = {});

/// Writes a whole file: a new one as by makeFile(), an existing one as by overwrite(), which see
/// for what a failure, a kill or a power cut can leave.
std::expected<void, QString> writeFile(const QUrl &target, const QByteArray &bytes,
                                       const QByteArray &digest = {});

} // namespace pixpress
