// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QUrl>

#include <functional>

namespace pixpress {

/// Shows a file, selected, in the desktop's file browser; where none can select a file, its folder.
/// Returns at once. A file that is gone is the file browser's to speak of.
void revealFile(const QUrl &file);

using Revealer = std::function<void(const QUrl &)>;

} // namespace pixpress
