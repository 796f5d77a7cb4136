// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/droppedfiles.h"

#include "model/formats.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// File managers may name this machine in the address; a file elsewhere is none of ours.
bool isOnThisMachine(const QUrl &url)
{
    return url.isLocalFile() && (url.host().isEmpty() || url.host() == u"localhost"_s);
}

/// To the system a zero is a name's end: "a.txt%00.png" would open "a.txt".
bool isName(const QUrl &url)
{
    return !url.toLocalFile().contains(QChar(0));
}

} // namespace

bool hasFile(const QList<QUrl> &dragged)
{
    return std::ranges::any_of(dragged, isOnThisMachine);
}

QList<QUrl> supportedFiles(const QList<QUrl> &dropped)
{
    QList<QUrl> supported;
    for (QUrl url : dropped) {
        if (!isOnThisMachine(url) || !isName(url) || !isSupported(url.fileName()))
            continue;
        if (!url.host().isEmpty())
            url.setHost({});
        supported.append(url);
    }
    return supported;
}

} // namespace pixpress
