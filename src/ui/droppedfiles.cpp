// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/droppedfiles.h"

#include "model/formats.h"

#include <QDir>
#include <QSysInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// File managers may name this machine in the address; a file elsewhere is none of ours.
bool isOnThisMachine(const QUrl &url)
{
    const QString host = url.host();
    return url.isLocalFile() &&
           (host.isEmpty() || host == "localhost"_L1 ||
            host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0);
}

/// The path of a file of this machine, with one slash in front: from two, Qt would make a host of a
/// folder when the name of the copy is made. A folder's name does not depend on a slash behind it.
QString pathOf(QUrl url)
{
    if (!url.host().isEmpty())
        url.setHost({});
    QString path = url.toLocalFile();
    while (path.startsWith("//"_L1))
        path.remove(0, 1);
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

/// Not where the program happens to have been started, which "file:a.png" would mean; and to the
/// system a zero is a name's end: "a.txt%00.png" would open "a.txt". A colon leads to what Qt has
/// built in, and not to a file.
bool isWhole(const QString &path)
{
    return QDir::isAbsolutePath(path) && !path.startsWith(u':') && !path.contains(QChar(0));
}

bool isSupportedPath(const QString &path)
{
    return isSupported(path.mid(path.lastIndexOf(u'/') + 1)) && isWhole(path);
}

/// Whether the address says the path and nothing else, and says it in plain letters. Making it anew
/// would then only take time, which the window waits for when thousands are dropped. (An invalid
/// address says that it has no authority, and a path all the same.)
bool isPlain(const QUrl &url, const QString &path)
{
    return url.isValid() && url.authority().isEmpty() && !url.hasQuery() && !url.hasFragment() &&
           url.path(QUrl::PrettyDecoded) == path;
}

} // namespace

bool hasFile(const QList<QUrl> &dragged)
{
    return std::ranges::any_of(dragged, isOnThisMachine);
}

bool hasSupportedFile(const QList<QUrl> &dragged)
{
    return std::ranges::any_of(dragged, [](const QUrl &url) {
        return isOnThisMachine(url) && isSupportedPath(pathOf(url));
    });
}

QList<QUrl> supportedFiles(const QList<QUrl> &dropped)
{
    QList<QUrl> supported;
    supported.reserve(dropped.size());
    for (const QUrl &url : dropped) {
        if (!isOnThisMachine(url))
            continue;
        const QString path = pathOf(url);
        if (isSupportedPath(path))
            supported.append(isPlain(url, path) ? url : QUrl::fromLocalFile(path));
    }
    return supported;
}

} // namespace pixpress
