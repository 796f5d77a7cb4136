// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"

#include <QString>
#include <QStringList>

#include <expected>

namespace pixpress::cli {

/// What the command line asks for.
struct Arguments
{
    QStringList files;        ///< As given.
    QStringList lists = {};   ///< Files with names of files; "-" is the standard input.
    QStringList folders = {}; ///< Whose pictures are compressed, and those of the folders in them.
    CompressionOptions options;
    bool remote = false;
    qint64 jobs = 1; ///< Files that are compressed at a time on this computer.
    bool json = false;
};

/// Why there is nothing to run.
struct NothingToRun
{
    bool isError = false; ///< Wrong usage, as opposed to a question that `text` answers.
    QString text;
};

/// Reads a command line, whose first element is the program's name. Does not look at the files; the
/// folders of --output and --recursive have to exist.
std::expected<Arguments, NothingToRun> parseArguments(const QStringList &commandLine);

} // namespace pixpress::cli
