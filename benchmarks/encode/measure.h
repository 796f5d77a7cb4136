// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/formats.h"

#include <QString>
#include <QTemporaryDir>

#include <stdexcept>
#include <vector>

/// The two sides of the comparison and the judge between them. Everything throws Failure.
namespace bench {

struct Failure : std::runtime_error
{
    explicit Failure(const QString &message) : std::runtime_error(message.toStdString()) {}
};

struct Encoding
{
    double bytes = 0;
    double seconds = 0;
    QString file;
};

/// One picture, laid out as the files that both sides start from.
class Reference
{
public:
    /// At most 1600 pixels a side, since the judge is slow; in sRGB and without metadata.
    explicit Reference(const QString &picture);

    /// Pixpress's codec on the file that a user would convert to `format`.
    Encoding ours(pixpress::ImageFormat format) const;

    /// The command-line tool of the format at one of its settings.
    Encoding yardstick(pixpress::ImageFormat format, int setting) const;

    /// Butteraugli's 3-norm between the encoding and what it was made from: 0 for the same.
    double distance(pixpress::ImageFormat format, const Encoding &encoding) const;

private:
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    QString inputFor(pixpress::ImageFormat format) const;

    QTemporaryDir m_folder;
};

/// The settings of a format's tool, from coarse to fine; ours lies between them.
std::vector<int> yardstickSettings(pixpress::ImageFormat format);

/// The one that takes as long as ours should.
int nominalSetting(pixpress::ImageFormat format);

QString toolOf(pixpress::ImageFormat format);

} // namespace bench
