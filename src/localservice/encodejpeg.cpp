// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/encode.h"

#include <cstdio> // jpeglib.h needs it and does not say so.

#include <jerror.h>
#include <jpeglib.h>

#include <csetjmp>
#include <cstdlib>
#include <iterator>
#include <numeric>

namespace pixpress {

namespace {

// libjpeg reports by callbacks and leaves a failed call by longjmp, so what lives across one is
// held here and freed by Repacking's destructor, never by an object inside the jumped-over
// function.
struct ErrorManager
{
    jpeg_error_mgr base;
    std::jmp_buf escape;
    bool isDamaged = false;
};

struct StopMonitor
{
    jpeg_progress_mgr base;
    const std::atomic_bool *stopped = nullptr;
};

[[noreturn]] void onError(j_common_ptr info)
{
    std::longjmp(reinterpret_cast<ErrorManager *>(info->err)->escape, 1);
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
    case JWRN_NOT_SEQUENTIAL: reinterpret_cast<ErrorManager *>(info->err)->isDamaged = true; break;
    default: break; // The library's own open list.
    }
}

void onProgress(j_common_ptr info)
{
    if (*reinterpret_cast<StopMonitor *>(info->progress)->stopped)
        onError(info);
}

/// The quality on libjpeg's scale that the luminance table stands for, by its mean step.
int estimatedQuality(const JQUANT_TBL &table)
{
    constexpr int standardSum = 3688; // Of libjpeg's luminance table at quality 50.
    const int sum = std::accumulate(std::begin(table.quantval), std::end(table.quantval), 0);
    const int scale = 100 * sum / standardSum;
    return scale <= 100 ? (200 - scale) / 2 : 5000 / scale;
}

struct Repacking
{
    ErrorManager errors{};
    StopMonitor monitor{};
    jpeg_decompress_struct source{};
    jpeg_compress_struct target{};
    unsigned char *bytes = nullptr;
    unsigned long size = 0;
    bool isComplete = false;
    bool isCompressed = false;

    explicit Repacking(const std::atomic_bool &stopped)
    {
        source.err = target.err = jpeg_std_error(&errors.base);
        errors.base.error_exit = onError;
        errors.base.emit_message = onMessage;
        monitor.base.progress_monitor = onProgress;
        monitor.stopped = &stopped;
    }
    Repacking(const Repacking &) = delete;
    Repacking &operator=(const Repacking &) = delete;
    ~Repacking()
    {
        jpeg_destroy_compress(&target);
        jpeg_destroy_decompress(&source);
        std::free(bytes);
    }

    void run(const QByteArray &original, const QByteArray &exif);
};

void Repacking::run(const QByteArray &original, const QByteArray &exif)
{
    if (setjmp(errors.escape) != 0)
        return;
    jpeg_create_decompress(&source);
    jpeg_create_compress(&target);
    source.progress = target.progress = &monitor.base;
    jpeg_mem_src(&source, reinterpret_cast<const unsigned char *>(original.constData()),
                 static_cast<unsigned long>(original.size()));
    jpeg_read_header(&source, TRUE);
    jvirt_barray_ptr *coefficients = jpeg_read_coefficients(&source);
    if (source.jpeg_color_space != JCS_YCbCr && source.jpeg_color_space != JCS_GRAYSCALE)
        return;
    const JQUANT_TBL *table = source.comp_info[0].quant_table;
    isCompressed = table && estimatedQuality(*table) <= jpegQuality;

    jpeg_mem_dest(&target, &bytes, &size);
    jpeg_copy_critical_parameters(&source, &target);
    target.optimize_coding = TRUE;
    jpeg_simple_progression(&target);
    jpeg_write_coefficients(&target, coefficients);
    if (!exif.isEmpty())
        jpeg_write_marker(&target, JPEG_APP0 + 1,
                          reinterpret_cast<const unsigned char *>(exif.constData()),
                          static_cast<unsigned>(exif.size()));
    jpeg_finish_compress(&target);
    jpeg_finish_decompress(&source);
    isComplete = true;
}

} // namespace

RepackedJpeg repackJpeg(const QByteArray &original, const QByteArray &exif,
                        const std::atomic_bool &stopped)
{
    Repacking repacking(stopped);
    repacking.run(original, exif);
    RepackedJpeg result;
    result.isDamaged = repacking.errors.isDamaged;
    result.isCompressed = repacking.isCompressed;
    if (repacking.isComplete)
        result.bytes = QByteArray(reinterpret_cast<const char *>(repacking.bytes),
                                  static_cast<qsizetype>(repacking.size));
    return result;
}

} // namespace pixpress
