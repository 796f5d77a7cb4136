// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/vipslibrary.h"

#include <QtGlobal>

#include <algorithm>
#include <mutex>
#include <thread>

namespace pixpress {

namespace {

// C callback of the "eval" signal.
void onEval(VipsImage *image, VipsProgress *, void *data)
{
    if (*static_cast<const std::atomic_bool *>(data))
        vips_image_set_kill(image, TRUE);
}

void ignoreMessage(const char *, GLogLevelFlags, const char *, void *) {}

} // namespace

void startVips()
{
    static std::once_flag once;
    std::call_once(once, [] {
        if (VIPS_INIT("pixpress") != 0)
            qFatal("libvips does not start: %s", vips_error_buffer());
        // Such as that a colour description was ignored: nothing that a person could act on.
        g_log_set_handler("VIPS", G_LOG_LEVEL_WARNING, ignoreMessage, nullptr);
        // No picture comes twice: a cache of operations would only hold their pixels.
        vips_cache_set_max(0);
        vips_concurrency_set(1);
        vips_operation_block_set("VipsForeignLoad", TRUE);
        for (const char *loader : {"VipsForeignLoadPng", "VipsForeignLoadJpeg",
                                   "VipsForeignLoadWebp", "VipsForeignLoadHeif"})
            vips_operation_block_set(loader, FALSE);
    });
}

int coreCount()
{
    static const int count = std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
    return count;
}

void useAllThreads(vips::VImage &pixels)
{
    pixels = pixels.copy();
    pixels.set(VIPS_META_CONCURRENCY, coreCount());
}

QByteArray taken(VipsBlob *blob)
{
    size_t size = 0;
    const void *bytes = vips_blob_get(blob, &size);
    QByteArray result(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
    vips_area_unref(reinterpret_cast<VipsArea *>(blob));
    return result;
}

void stopWith(vips::VImage &image, const std::atomic_bool &stopped)
{
    vips_image_set_progress(image.get_image(), TRUE);
    g_signal_connect(image.get_image(), "eval", G_CALLBACK(onEval),
                     const_cast<std::atomic_bool *>(&stopped));
}

} // namespace pixpress
