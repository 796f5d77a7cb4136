// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace pixpress {

/// A small picture, upright and in sRGB.
struct Thumbnail
{
    int width = 0; ///< Pixels; 0 if there is no picture.
    int height = 0;
    QByteArray rgba; ///< Four bytes per pixel, opacity not multiplied in; rows without padding.
};

} // namespace pixpress
