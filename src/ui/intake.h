// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QUrl>

namespace pixpress {

class AppState;

/// Takes in what was dropped on the window, or named on the command line: those that
/// supportedFiles() leaves, in one batch with the current options.
void handleDrop(AppState &appState, const QList<QUrl> &dropped);

} // namespace pixpress
