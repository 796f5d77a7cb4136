// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QUrl>

/// Which of the addresses that are dragged over the window concern it. Nothing looks at the disk.
namespace pixpress {

/// Whether any of them is a file of this machine.
bool hasFile(const QList<QUrl> &dragged);

/// Whether supportedFiles() would leave any of them.
bool hasSupportedFile(const QList<QUrl> &dragged);

/// The files of this machine that have a supported extension. The rest is left out silently.
QList<QUrl> supportedFiles(const QList<QUrl> &dropped);

} // namespace pixpress
