// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/newfile.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

Descriptor::Result<> fill(Descriptor &file, const FileContent &content)
{
    if (const auto written = content(file); !written)
        return written;
    return file.sync();
}

Descriptor::Result<> remove(const QString &path)
{
    if (unlink(QFile::encodeName(path).constData()) == 0)
        return {};
    return std::unexpected(errno);
}

/// Makes the new name durable, or takes it back.
Descriptor::Result<> settle(const QString &path, const Descriptor &file)
{
    const auto synced = Descriptor::syncFolder(QFileInfo(path).path(), file);
    if (!synced)
        (void)remove(path);
    return synced;
}

/// Returns nothing where files cannot be made in this way.
std::optional<Descriptor::Result<>> makeUnnamed(const QString &path, const FileContent &content)
{
    auto file = Descriptor::openUnnamed(QFileInfo(path).path());
    if (!file)
        return std::nullopt;
    if (const auto filled = fill(*file, content); !filled)
        return filled;
    if (const auto named = file->giveName(path); !named)
        return named.error() == EEXIST ? std::optional(named) : std::nullopt;
    return settle(path, *file);
}

/// Moves a file to a name that is free.
Descriptor::Result<> rename(const QString &from, const QString &to)
{
    const QByteArray oldName = QFile::encodeName(from);
    const QByteArray newName = QFile::encodeName(to);
#ifdef RENAME_NOREPLACE
    if (renameat2(AT_FDCWD, oldName.constData(), AT_FDCWD, newName.constData(), RENAME_NOREPLACE) ==
        0)
        return {};
    if (errno != EINVAL && errno != ENOSYS)
        return std::unexpected(errno);
#endif
    if (link(oldName.constData(), newName.constData()) == 0) {
        (void)remove(from);
        return {};
    }
    if (errno != EPERM && errno != ENOTSUP && errno != ENOSYS)
        return std::unexpected(errno);
    // The simplest file systems know neither. This takes the name before it replaces it.
    if (const auto taken = Descriptor::open(to, O_WRONLY | O_CREAT | O_EXCL); !taken)
        return std::unexpected(taken.error());
    if (std::rename(oldName.constData(), newName.constData()) == 0)
        return {};
    const int error = errno;
    (void)remove(to);
    return std::unexpected(error);
}

Descriptor::Result<> makeRenamed(const QString &path, const FileContent &content)
{
    const QString part = QFileInfo(path).path() + u"/.pixpress-part-"_s +
                         QString::number(QRandomGenerator::system()->generate64(), 16);
    auto file = Descriptor::open(part, O_WRONLY | O_CREAT | O_EXCL);
    if (!file)
        return std::unexpected(file.error());
    auto made = fill(*file, content);
    if (made)
        made = rename(part, path);
    if (!made) {
        (void)remove(part);
        return made;
    }
    return settle(path, *file);
}

} // namespace

Descriptor::Result<> makeFile(const QString &path, const FileContent &content)
{
    if (const QFileInfo info(path); info.isSymLink() || info.exists())
        return std::unexpected(EEXIST); // Both ways would find out too, but only after writing.
    const auto made = makeUnnamed(path, content);
    return made ? *made : makeRenamed(path, content);
}

} // namespace pixpress
