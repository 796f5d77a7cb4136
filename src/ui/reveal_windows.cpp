// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/reveal.h"

#include <QDir>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace pixpress {

void revealFile(const QUrl &file)
{
    QProcess::startDetached(u"explorer.exe"_s,
                            {u"/select,"_s + QDir::toNativeSeparators(file.toLocalFile())});
}

} // namespace pixpress
