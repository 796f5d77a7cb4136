// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/strip.h"

namespace pixpress {

std::optional<QByteArray> stripped(const QByteArray &file, ImageFormat format,
                                   const QByteArray &exif)
{
    switch (format) {
    case ImageFormat::png: return strippedPng(file, exif);
    case ImageFormat::jpeg: return strippedJpeg(file, exif);
    case ImageFormat::webp: return strippedWebp(file, exif);
    case ImageFormat::avif: return strippedAvif(file, exif);
    }
    Q_UNREACHABLE();
}

} // namespace pixpress
