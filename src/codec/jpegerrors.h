// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdio> // jpeglib.h needs it and does not say so.

#include <jpeglib.h>

#include <atomic>
#include <csetjmp>

/// libjpeg reports by callbacks and leaves a failed call by longjmp, so what lives across one is
/// held by an object outside of the jumped-over function.
namespace pixpress {

struct JpegErrors
{
    jpeg_error_mgr base;
    std::jmp_buf escape;    ///< To be set before each call.
    bool isDamaged = false; ///< The decoder makes up a part of the picture.
};

struct JpegMonitor
{
    jpeg_progress_mgr base;
    const std::atomic_bool *stopped = nullptr;
};

/// An object of libjpeg then has &errors.base.
void prepare(JpegErrors &errors);

/// Makes the work fail soon after `stopped` is raised.
void prepare(JpegMonitor &monitor, const std::atomic_bool &stopped);

} // namespace pixpress
