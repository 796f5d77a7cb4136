// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <expected>

/// What the queue does on the disk, on the calling thread. Errors are sentences for the user.
namespace pixpress {

/// The whole content of a regular file; pipes, devices and folders are refused.
std::expected<QByteArray, QString> readFile(const QUrl &source);

/// Writes the output of a source file to where the options say; returns where that is. Copies get
/// the first free name: they never replace a file, not even one that appears meanwhile. What
/// replaces a file is written as by writeFile().
std::expected<QUrl, QString> writeOutput(const QUrl &source, const CompressionOptions &options,
                                         const QByteArray &bytes);

/// Writes a whole file, into an existing one in place: its hard links, permissions, symbolic links
/// and open handles stay. When that fails an existing file has its old content again, and a new
/// one is gone. A process that is killed leaves no part of a new file where the file system can
/// make files without a name, as the usual ones of Linux can.
std::expected<void, QString> writeFile(const QUrl &target, const QByteArray &bytes);

} // namespace pixpress
