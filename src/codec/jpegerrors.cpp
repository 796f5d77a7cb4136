// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/jpegerrors.h"

#include <jerror.h>

namespace pixpress {

namespace {

[[noreturn]] void onError(j_common_ptr info)
{
    std::longjmp(reinterpret_cast<JpegErrors *>(info->err)->escape, 1);
}

/// Warnings after which libjpeg goes on with made-up data; others, such as stray bytes between two
/// markers, leave the picture whole.
void onMessage(j_common_ptr info, int level)
{
    if (level >= 0)
        return;
    switch (info->err->msg_code) {
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_JPEG_EOF:
    case JWRN_MUST_RESYNC:
    case JWRN_NOT_SEQUENTIAL: reinterpret_cast<JpegErrors *>(info->err)->isDamaged = true; break;
    default: break; // The library's own open list.
    }
}

void onProgress(j_common_ptr info)
{
    if (*reinterpret_cast<JpegMonitor *>(info->progress)->stopped)
        onError(info);
}

} // namespace

void prepare(JpegErrors &errors)
{
    jpeg_std_error(&errors.base);
    errors.base.error_exit = onError;
    errors.base.emit_message = onMessage;
}

void prepare(JpegMonitor &monitor, const std::atomic_bool &stopped)
{
    monitor.base.progress_monitor = onProgress;
    monitor.stopped = &stopped;
}

} // namespace pixpress
