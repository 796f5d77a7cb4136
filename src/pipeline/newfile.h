// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/descriptor.h"

#include <QString>

#include <functional>

namespace pixpress {

/// Writes the content of a file that is being made.
using FileContent = std::function<Descriptor::Result<>(Descriptor &file)>;

/// Makes a file that has its name only when it is whole and on the disk. Fails with EEXIST when
/// something has that name, which is never replaced; after any failure nothing is left.
///
/// Where the file system has no unnamed files, a process that is killed can leave a hidden file
/// ".pixpress-part-..." beside the name. `content` can be called twice, on different files.
Descriptor::Result<> makeFile(const QString &path, const FileContent &content);

} // namespace pixpress
