// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/formats.h"

#include <QByteArray>
#include <QList>

/// Pictures with something wrong, the same ones at each call. Some can still be decoded.
namespace pixpress::testing {

struct BrokenPicture
{
    QByteArray name; ///< What is wrong; may stand in a file name.
    QByteArray bytes;
};
using BrokenPictures = QList<BrokenPicture>;

/// Whole and small, with metadata.
QByteArray wholePicture(ImageFormat format);

/// Ends too early: at every byte in the beginning, then here and there.
BrokenPictures truncated(ImageFormat format);

/// One to four bits are others.
BrokenPictures withFlippedBits(ImageFormat format);

/// A chunk, marker or box states another length than it has.
BrokenPictures withWrongLengths(ImageFormat format);

/// The header states another size than the picture has, check sums being right.
BrokenPictures withLyingDimensions(ImageFormat format);

/// Small files that grow when they are decoded.
BrokenPictures bombs();

/// A PNG of that many black pixels whose compressed data holds `inflated` zeros.
QByteArray blackPng(quint32 width, quint32 height, qsizetype inflated);

/// A progressive, black JPEG whose last scan, one of six, is there so many times more.
QByteArray jpegOfScans(int side, int repeated);

} // namespace pixpress::testing
