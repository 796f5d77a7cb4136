// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/diskimage.h"

#include "pipeline/tree.h"

#include <QFile>
#include <QSet>

#include <algorithm>
#include <sys/stat.h>

namespace pixpress::test {

using faults::Step;

DiskImage::DiskImage(const QString &folder) : m_folder(folder + u'/')
{
    struct stat root{};
    stat(qPrintable(folder), &root);
    m_folders.insert(root.st_ino, QString());
    const Tree tree = treeOf(folder);
    for (const auto &[path, entry] : tree.asKeyValueRange()) {
        if (S_ISDIR(entry.mode))
            m_folders.insert(entry.inode, path + u'/');
        if (!S_ISREG(entry.mode))
            continue;
        m_files.insert(entry.inode,
                       {.onDisk = entry.content, .pending = {}, .size = entry.content.size()});
        m_names.insert(path, entry.inode);
    }
    m_seen = m_names;
}

QString DiskImage::below(const std::string &path) const
{
    const QString whole = QFile::decodeName(path.c_str());
    if (!whole.startsWith(m_folder))
        qFatal("%s is not in the folder.", path.c_str());
    return whole.sliced(m_folder.size());
}

void DiskImage::apply(const Step &step)
{
    switch (step.kind) {
    case Step::Kind::write: {
        File &file = m_files[step.inode];
        const QByteArray data = QByteArray::fromStdString(step.data);
        for (qint64 begin = step.offset, end = step.offset + data.size(); begin < end;) {
            const qint64 next = std::min(end, (begin / sectorSize + 1) * sectorSize);
            file.pending.append(
                Change{.offset = begin, .data = data.sliced(begin - step.offset, next - begin)});
            begin = next;
        }
        if (step.offset + data.size() > file.size) {
            file.size = step.offset + data.size();
            file.pending.append(Change{.offset = file.size, .data = {}});
        }
        return;
    }
    case Step::Kind::resize: {
        File &file = m_files[step.inode];
        if (file.size != step.offset)
            file.pending.append(Change{.offset = step.offset, .data = {}});
        file.size = step.offset;
        return;
    }
    case Step::Kind::sync:
        if (const auto folder = m_folders.constFind(step.inode); folder != m_folders.constEnd()) {
            QList<Naming> others;
            for (const Naming &naming : std::as_const(m_pending)) {
                if (folderOf(naming.path) == *folder)
                    rename(m_names, naming);
                else
                    others.append(naming);
            }
            m_pending = others;
        } else {
            File &file = m_files[step.inode];
            file.onDisk = contentsOf(file).last(); // with all changes
            file.pending.clear();
        }
        return;
    case Step::Kind::make: m_files.insert(step.inode, {}); return;
    case Step::Kind::link:
        m_pending.append(Naming{.path = below(step.path), .inode = step.inode, .goes = {}});
        break;
    case Step::Kind::rename:
        m_pending.append(Naming{.path = below(step.target),
                                .inode = m_seen.value(below(step.path)),
                                .goes = below(step.path)});
        break;
    case Step::Kind::unlink:
        m_pending.append(Naming{.path = below(step.path), .inode = 0, .goes = {}});
        break;
    }
    rename(m_seen, m_pending.last());
}

void DiskImage::rename(QMap<QString, ino_t> &names, const Naming &naming)
{
    if (naming.inode == 0)
        names.remove(naming.path);
    else
        names.insert(naming.path, naming.inode);
    if (!naming.goes.isEmpty())
        names.remove(naming.goes);
}

/// The last one has all changes.
QList<QByteArray> DiskImage::contentsOf(const File &file)
{
    if (file.pending.size() > 20)
        qFatal("Too many changes without a sync.");
    QList<QByteArray> contents;
    for (quint32 chosen = 0; chosen < 1U << file.pending.size(); ++chosen) {
        QByteArray sectors = file.onDisk; // what is behind the end too
        qint64 size = sectors.size();
        for (qsizetype i = 0; i < file.pending.size(); ++i) {
            const auto &[offset, data] = file.pending[i];
            if ((chosen & (1U << i)) == 0)
                continue;
            if (data.isEmpty()) {
                if (offset < size)
                    sectors.truncate(offset);
                size = offset;
                continue;
            }
            if (sectors.size() < offset + data.size())
                sectors.append(offset + data.size() - sectors.size(), '\0');
            sectors.replace(offset, data.size(), data);
        }
        sectors.resize(std::min(sectors.size(), size));
        sectors.append(size - sectors.size(), '\0');
        contents.append(sectors);
    }
    return contents;
}

void DiskImage::forEachState(const std::function<void(const Files &)> &check) const
{
    QHash<ino_t, QList<QByteArray>> contents;
    for (const auto &[inode, file] : m_files.asKeyValueRange())
        contents.insert(inode, contentsOf(file));
    QSet<QList<std::pair<QString, QByteArray>>> seen;

    for (quint32 chosen = 0; chosen < 1U << m_pending.size(); ++chosen) {
        QMap<QString, ino_t> names = m_names;
        for (qsizetype i = 0; i < m_pending.size(); ++i) {
            if ((chosen & (1U << i)) != 0)
                rename(names, m_pending[i]);
        }
        // Each content of each named file with each of the others.
        QList<ino_t> inodes = names.values();
        std::ranges::sort(inodes);
        inodes.erase(std::ranges::unique(inodes).begin(), inodes.end());
        QList<qsizetype> turns(inodes.size(), 0);
        for (bool isMore = true; isMore;) {
            Files state;
            QList<std::pair<QString, QByteArray>> key;
            for (const auto &[path, inode] : names.asKeyValueRange()) {
                state[path] = contents[inode][turns[inodes.indexOf(inode)]];
                key.append({path, state[path]});
            }
            if (!seen.contains(key)) {
                seen.insert(key);
                check(state);
            }
            isMore = false;
            for (qsizetype i = 0; i < inodes.size() && !isMore; ++i) {
                turns[i] = (turns[i] + 1) % contents[inodes[i]].size();
                isMore = turns[i] != 0;
            }
        }
    }
}

} // namespace pixpress::test
