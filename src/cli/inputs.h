// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cli/arguments.h"

#include <QList>
#include <QString>

#include <expected>

namespace pixpress::cli {

/// A file to compress.
struct Input
{
    QString file;
    QString outputFolder = {}; ///< Instead of that of the options; empty: theirs.
};

struct Inputs
{
    QList<Input> files;
    QStringList unreadableFolders; ///< Met by --recursive.
};

/// The files that the command line names: itself, in lists, or by their folder. Of folders, only
/// pictures are taken, and none that Pixpress has written. The error is a sentence.
std::expected<Inputs, QString> collectInputs(const Arguments &arguments);

} // namespace pixpress::cli
