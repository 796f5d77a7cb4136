// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/faults/faults.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

#include <functional>

namespace pixpress::test {

/// What the disk may hold of a folder after the power fails. Until a file is synced, each of its
/// sectors that was written and each of its sizes reaches the disk or not, independently of the
/// others; until a folder is synced, so does each change of a name in it. That is less than any
/// journaling file system promises.
class DiskImage
{
public:
    using Files = QMap<QString, QByteArray>; ///< Content by path below the folder.

    /// The folder as it is, and all of it on the disk.
    explicit DiskImage(const QString &folder);

    /// Does what a program has done. Must be of this folder, in the order of the program.
    void apply(const faults::Step &step);

    /// Calls with each content that the disk may hold if the power fails now; each once.
    void forEachState(const std::function<void(const Files &)> &check) const;

private:
    static constexpr qsizetype sectorSize = 512;

    /// A sector or a size.
    struct Change
    {
        qint64 offset = 0;
        QByteArray data; ///< None: the size becomes `offset`.
    };
    struct File
    {
        QByteArray onDisk;
        QList<Change> pending;
        qint64 size = 0; ///< As the program sees it.
    };
    struct Naming
    {
        QString path;
        ino_t inode = 0; ///< None: the name goes.
        QString goes;    ///< A name that goes by the same change.
    };

    static QList<QByteArray> contentsOf(const File &file);
    static void rename(QMap<QString, ino_t> &names, const Naming &naming);
    QString below(const std::string &path) const;
    QString folderOf(const QString &path) const { return path.first(path.lastIndexOf(u'/') + 1); }

    QString m_folder;
    QHash<ino_t, QString> m_folders;
    QHash<ino_t, File> m_files;
    QMap<QString, ino_t> m_names; ///< On the disk.
    QMap<QString, ino_t> m_seen;  ///< As the program sees them.
    QList<Naming> m_pending;
};

} // namespace pixpress::test
