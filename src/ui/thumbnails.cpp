// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/thumbnails.h"

#include "pictures/vipslibrary.h"
#include "pipeline/descriptor.h"

#include <QPromise>

#include <fcntl.h>

namespace pixpress {

namespace {

using vips::VImage;

constexpr int thumbnailPixels = 72;
/// Decoders other than JPEG's hold all pixels at once: four bytes each, so a gigabyte.
constexpr qint64 maxPixels = 16'384LL * 16'384;

bool isTooLarge(const vips::VSource &source)
{
    const VImage opened = VImage::new_from_source(source, "");
    return qint64{opened.width()} * opened.height() > maxPixels;
}

QImage toQImage(VImage image, const std::atomic_bool &stopped)
{
    if (!image.has_alpha())
        image = image.bandjoin(255);
    stopWith(image, stopped);
    const auto freeMemory = [](void *memory) { g_free(memory); };
    size_t size = 0;
    auto *pixels = static_cast<uchar *>(image.write_to_memory(&size));
    return {pixels,
            image.width(),
            image.height(),
            4 * qsizetype{image.width()},
            QImage::Format_RGBA8888,
            freeMemory,
            pixels};
}

} // namespace

QImage generateThumbnail(const QUrl &file, const std::atomic_bool &stopped)
{
    startVips();
    const auto opened = Descriptor::open(file.toLocalFile(), O_RDONLY);
    if (!opened || !opened->size())
        return {};
    try {
        const auto source = vips::VSource::new_from_descriptor(opened->get());
        if (isTooLarge(source))
            return {};
        const VImage thumbnail = VImage::thumbnail_source(source, thumbnailPixels,
                                                          VImage::option()
                                                              ->set("height", thumbnailPixels)
                                                              ->set("size", VIPS_SIZE_DOWN)
                                                              ->set("fail_on", VIPS_FAIL_ON_ERROR)
                                                              ->set("output_profile", "srgb"));
        return toQImage(thumbnail.colourspace(VIPS_INTERPRETATION_sRGB), stopped);
    } catch (const vips::VError &) {
        vips_error_clear();
        return {};
    }
}

Thumbnails::Thumbnails()
{
    m_pool.setThreadPriority(QThread::LowPriority);
}

Thumbnails::~Thumbnails()
{
    m_stopped = true;
    m_pool.clear();
    m_pool.waitForDone();
}

QFuture<QImage> Thumbnails::request(const QUrl &file)
{
    // std::function, which the pool takes, must be copyable; a promise is not.
    const auto promise = std::make_shared<QPromise<QImage>>();
    m_pool.start(
        [this, promise, file] {
            promise->start();
            if (!promise->isCanceled())
                promise->addResult(generateThumbnail(file, m_stopped));
            promise->finish();
        },
        ++m_requests);
    return promise->future();
}

} // namespace pixpress
