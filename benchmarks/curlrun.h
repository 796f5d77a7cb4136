// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QUrl>

namespace bench {

/// How runCurl() holds a file.
enum class Holding { whole, inPieces };

/// Does for the files what a queue does, with nothing but libcurl and system calls: one handle, one
/// request after another over one connection, with the same headers and the same names of outputs.
/// Returns the seconds that it took.
double runCurl(const QUrl &service, const QList<QUrl> &files, Holding holding);

} // namespace bench
