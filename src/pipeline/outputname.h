// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"

#include <QString>
#include <QUrl>

namespace pixpress {

/// Where the output of a file goes. Does not look at the disk. The source must be a local file;
/// without a folder chosen its own is taken.
class OutputName
{
public:
    OutputName(const QUrl &source, const CompressionOptions &options);

    /// Whether the output replaces what has its name. Else it gets the first name that is free.
    bool replaces() const { return m_replaces; }
    /// Whether that is the source itself.
    bool replacesSource() const { return !m_whole.isEmpty(); }
    /// Whether the chosen folder can be written to by its path. If not, there is no output.
    bool isOnThisComputer() const { return m_isOnThisComputer; }

    /// The output's name, and those (from 1 on) that follow when that is taken. What a source has
    /// in front of its extension is shortened if the name would be too long for a file system.
    QUrl url(int number = 0) const;

private:
    QUrl m_whole; // when it is the source itself
    QString m_folder;
    QString m_baseName;
    QString m_suffix;
    QString m_extension;
    bool m_replaces = false;
    bool m_isOnThisComputer = true;
};

} // namespace pixpress
