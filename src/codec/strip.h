// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/formats.h"

#include <QByteArray>

#include <optional>

namespace pixpress {

/// The file with its picture as it is stored, and of all else only what decides how that looks
/// (such as its colour profile) and `exif`, which may be empty. No part that is unknown gets
/// through. None when the file is not built as its format demands, or has no room for `exif`, which
/// is a block as preservedExif() makes it.
std::optional<QByteArray> stripped(const QByteArray &file, ImageFormat format,
                                   const QByteArray &exif);

std::optional<QByteArray> strippedPng(const QByteArray &file, const QByteArray &exif);
std::optional<QByteArray> strippedJpeg(const QByteArray &file, const QByteArray &exif);
std::optional<QByteArray> strippedWebp(const QByteArray &file, const QByteArray &exif);

/// As long as the file was: its parts refer to each other by their places.
std::optional<QByteArray> strippedAvif(const QByteArray &file, const QByteArray &exif);

} // namespace pixpress
