// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/tasks.h"

#include <QFileInfo>
#include <QRandomGenerator>

#include <array>
#include <cmath>
#include <span>

namespace pixpress {

namespace {

/// A random identifier (version 4, variant 1 of RFC 4122). QUuid::createUuid() asks the system for
/// each, which takes longer than all the rest of a task but its file's size; it need not be secret.
QUuid freshId()
{
    std::array<quint32, 4> bits;
    QRandomGenerator::global()->fillRange(bits.data(), bits.size());
    QUuid id = QUuid::fromRfc4122(QByteArrayView(std::as_bytes(std::span(bits))));
    id.data3 = (id.data3 & 0x0fff) | 0x4000;
    id.data4[0] = (id.data4[0] & 0x3f) | 0x80;
    return id;
}

/// A list of thousands is made while the window waits, so what is rarely needed is left out.
QString lastComponent(const QUrl &url)
{
    const QString name = url.fileName();
    return name.isEmpty() ? url.adjusted(QUrl::StripTrailingSlash).fileName() : name;
}

} // namespace

qint64 CompressionResult::savingsPercentage() const
{
    if (originalSize < 1)
        return 0;
    const double percent =
        (1.0 - static_cast<double>(compressedSize) / static_cast<double>(originalSize)) * 100.0;
    // Casting a double that a qint64 cannot hold would be undefined.
    if (std::isnan(percent) || percent < -0x1p63 || percent >= 0x1p63)
        qFatal("Savings of %f %% do not fit a 64-bit integer.", percent);
    return static_cast<qint64>(percent);
}

bool isActive(const TaskStatus &status)
{
    return std::holds_alternative<status::Uploading>(status) ||
           std::holds_alternative<status::Compressing>(status) ||
           std::holds_alternative<status::Downloading>(status);
}

bool hasEnded(const TaskStatus &status)
{
    return std::holds_alternative<status::Completed>(status) ||
           std::holds_alternative<status::Failed>(status);
}

CompressionTask::CompressionTask(const QUrl &sourceURL, const CompressionOptions &options)
    : id(freshId()),
      sourceURL(sourceURL),
      fileName(lastComponent(sourceURL)),
      originalSize(QFileInfo(sourceURL.toLocalFile()).size()),
      options(options),
      addedAt(QDateTime::currentDateTimeUtc())
{
}

} // namespace pixpress
