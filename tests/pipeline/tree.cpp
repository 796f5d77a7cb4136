// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/tree.h"

#include "pipeline/folder.h"

#include <QDirIterator>

#include <sys/fsuid.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress::test {

Tree treeOf(const QString &folder)
{
    Tree tree;
    QDirIterator names(folder,
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (names.hasNext()) {
        const QFileInfo info(names.next());
        const struct stat status = statusOf(info.filePath());
        Entry entry{status.st_ino, status.st_mode, status.st_nlink, {}};
        QFile file(info.filePath());
        if (S_ISLNK(status.st_mode))
            entry.content = QFile::encodeName(info.symLinkTarget());
        else if (S_ISREG(status.st_mode) && file.open(QIODevice::ReadOnly))
            entry.content = file.readAll();
        tree[info.filePath().mid(folder.size() + 1)] = entry;
    }
    return tree;
}

QString difference(const Tree &before, const Tree &after)
{
    QStringList words;
    for (const QString &name : before.keys()) {
        if (!after.contains(name))
            words << name + u" is gone"_s;
        else if (after[name].content != before[name].content)
            words << name + u" has another content"_s;
        else if (after[name] != before[name])
            words << name + u" has other properties"_s;
    }
    for (const QString &name : after.keys()) {
        if (!before.contains(name))
            words << name + u" is new"_s;
    }
    return words.join(u", "_s);
}

QString quickTemplate()
{
    const QString memory = u"/dev/shm"_s;
    return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + u"/pixpress-XXXXXX"_s;
}

namespace {

void actOnFilesAs(uid_t user)
{
#ifdef Q_OS_LINUX
    if (geteuid() == 0)
        setfsuid(user);
#endif
}

} // namespace

BoundByPermissions::BoundByPermissions()
{
    actOnFilesAs(65534); // nobody
}

BoundByPermissions::~BoundByPermissions()
{
    actOnFilesAs(0);
}

} // namespace pixpress::test
