// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <expected>

namespace pixpress {

/// Recognises content whose bytes are kept no longer.
QByteArray digestOf(const QByteArray &content);

/// Replaces the content of an existing file in place: its hard links, permissions, symbolic links
/// and open handles stay. Until the new content is on the disk, a copy of the old one is beside it,
/// as NAME.pixpress-old, where a file can be made there: whenever the process is killed or the
/// power fails, the file or the copy is whole. On an error the file is as it was, or the error
/// names the copy. Errors are reasons, without a full stop.
///
/// With a digest the file is only replaced when it has that content, else it has been changed by
/// another program, whose work is left alone.
std::expected<void, QString> overwrite(const QString &path, const QByteArray &bytes,
                                       const QByteArray &digest = {});

/// Why the file at `path`, which need not exist, cannot be overwritten before the user has dealt
/// with the copy of an interrupted overwrite(); empty when there is none.
QString leftoverCopy(const QString &path);

} // namespace pixpress
