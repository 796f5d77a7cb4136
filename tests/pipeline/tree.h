// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <sys/types.h>

namespace pixpress::test {

/// Everything about a name that a save could change.
struct Entry
{
    ino_t inode = 0;
    mode_t mode = 0;
    nlink_t links = 0;
    QByteArray content; ///< Where it leads, of a symbolic link.

    friend bool operator==(const Entry &, const Entry &) = default;
};

/// What is below a folder, by the path from there.
using Tree = QMap<QString, Entry>;
Tree treeOf(const QString &folder);

/// In what two trees differ, in words; empty when they are the same.
QString difference(const Tree &before, const Tree &after);

/// A folder in memory where there is one: a test's own faults are not the disk's, which need not be
/// waited for.
QString quickTemplate();

/// While this lives the files' permissions bind this thread, which they do not when it is root's.
class BoundByPermissions
{
public:
    BoundByPermissions();
    ~BoundByPermissions();
    Q_DISABLE_COPY_MOVE(BoundByPermissions)
};

} // namespace pixpress::test
