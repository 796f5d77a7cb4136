// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/reveal.h"

#include <QProcess>

using namespace Qt::StringLiterals;

namespace pixpress {

void revealFile(const QUrl &file)
{
    QProcess::startDetached(u"/usr/bin/open"_s, {u"-R"_s, file.toLocalFile()});
}

} // namespace pixpress
