// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

#include <optional>

class QWindow;

namespace pixpress {

/// What the desktop's file chooser is asked for: any number of files, or one folder.
struct FileChoice
{
    /// Files of these MIME types; of any type if there are none.
    struct Filter
    {
        QString name;
        QStringList contentTypes = {};
    };

    QString title;
    bool isFolder = false;
    QString acceptLabel = {}; ///< The chooser's own if empty.
    QList<Filter> filters = {};
    QUrl currentFolder = {}; ///< Choosers before version 4 of the portal ignore it.
};

/// Lets the user choose in the file chooser that the desktop offers through its portal. Returns
/// when it is closed, with nothing in the list if it was cancelled; no list if there is no portal,
/// or if it ended before it answered. `window`, before which the chooser opens, takes no input
/// meanwhile.
std::optional<QList<QUrl>> chooseThroughPortal(const FileChoice &choice, QWindow &window);

} // namespace pixpress
