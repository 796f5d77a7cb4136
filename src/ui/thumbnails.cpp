// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/thumbnails.h"

#include "pictures/vipslibrary.h"
#include "pipeline/descriptor.h"

#include <QPromise>

#include <algorithm>
#include <fcntl.h>
#include <string_view>

namespace pixpress {

namespace {

using vips::VImage;

constexpr int thumbnailPixels = 72;
/// Decoders other than JPEG's hold all pixels at once: four bytes each, so a gigabyte.
constexpr qint64 maxPixels = 16'384LL * 16'384;

/// How much smaller each side may get while a JPEG is decoded, which is nearly free, and still
/// leave twice what is wanted.
int shrinkOnLoad(const VImage &opened)
{
    const int longerSide = std::max(opened.width(), opened.height());
    for (const int factor : {8, 4, 2}) {
        if (longerSide / factor >= 2 * thumbnailPixels)
            return factor;
    }
    return 1;
}

/// All pixels, in memory. Making them smaller while they are decoded would paint black what is
/// damaged, where a person should see that there is no picture.
VImage decoded(const vips::VSource &source, const std::atomic_bool &stopped)
{
    const VImage opened = VImage::new_from_source(source, "");
    if (qint64{opened.width()} * opened.height() > maxPixels)
        throw vips::VError("too large");
    auto *options =
        VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL)->set("fail_on", VIPS_FAIL_ON_ERROR);
    if (std::string_view(opened.get_string("vips-loader")).starts_with("jpeg"))
        options->set("shrink", shrinkOnLoad(opened));
    VImage image = VImage::new_from_source(source, "", options);
    stopWith(image, stopped);
    return image.copy_memory();
}

QImage toQImage(VImage image)
{
    if (!image.has_alpha())
        image = image.bandjoin(255);
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
        const VImage image = decoded(vips::VSource::new_from_descriptor(opened->get()), stopped);
        const VImage thumbnail =
            image.thumbnail_image(thumbnailPixels, VImage::option()
                                                       ->set("height", thumbnailPixels)
                                                       ->set("size", VIPS_SIZE_DOWN)
                                                       ->set("output_profile", "srgb"));
        return stopped ? QImage() : toQImage(thumbnail.colourspace(VIPS_INTERPRETATION_sRGB));
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
