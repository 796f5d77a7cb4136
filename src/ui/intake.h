// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QUrl>

namespace pixpress {

class AppState;

/// Whether anything dragged is a file of this machine.
bool hasFile(const QList<QUrl> &dragged);

/// Takes in what was dropped on the window: local files of a supported extension, in one batch with
/// the current options. The rest is left out silently; nothing looks at the disk here.
void handleDrop(AppState &appState, const QList<QUrl> &dropped);

} // namespace pixpress
