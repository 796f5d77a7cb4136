// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/encode.h"

#include "codec/metadata.h"
#include "codec/strip.h"
#include "codec/vipslibrary.h"

#include <webp/encode.h>

#include <memory>

namespace pixpress {

namespace {

using vips::VImage;

constexpr int quality = 80;
constexpr int effort = 4;

struct PictureDeleter
{
    void operator()(WebPPicture *picture) const
    {
        WebPPictureFree(picture);
        delete picture;
    }
};

struct Writer : WebPMemoryWriter
{
    Writer() : WebPMemoryWriter{} { WebPMemoryWriterInit(this); }
    Writer(const Writer &) = delete;
    Writer &operator=(const Writer &) = delete;
    ~Writer() { WebPMemoryWriterClear(this); }
};

// C callback: 0 ends the work.
int goesOn(int, const WebPPicture *picture)
{
    return *static_cast<const std::atomic_bool *>(picture->user_data) ? 0 : 1;
}

/// How hard the encoder tries on a picture that takes long; its time grows with the pixels, and
/// somebody waits.
int effortFor(const VImage &image)
{
    constexpr qint64 manyPixels = 30'000'000;
    return static_cast<qint64>(image.width()) * image.height() > manyPixels ? 2 : effort;
}

/// libwebp is called directly since libvips gives no way to limit the first partition, in which the
/// format has room for only 512 kB: very large, very detailed pictures fail without.
QByteArray encodeStill(const VImage &image, const std::atomic_bool &stopped)
{
    const VImage pixels = image.bands() < 3 ? image.colourspace(VIPS_INTERPRETATION_sRGB) : image;
    const VImage inMemory = pixels.copy_memory();
    const auto *samples = static_cast<const uint8_t *>(vips_image_get_data(inMemory.get_image()));
    const int stride = inMemory.width() * inMemory.bands();

    for (const int partitionLimit : {0, 70, 100}) {
        WebPConfig config;
        const std::unique_ptr<WebPPicture, PictureDeleter> picture(new WebPPicture);
        if (!WebPConfigInit(&config) || !WebPPictureInit(picture.get()))
            break;
        Writer writer;
        config.quality = quality;
        config.method = effortFor(image);
        config.thread_level = 1;
        config.partition_limit = partitionLimit;
        picture->width = inMemory.width();
        picture->height = inMemory.height();
        picture->writer = WebPMemoryWrite;
        picture->custom_ptr = static_cast<WebPMemoryWriter *>(&writer);
        picture->progress_hook = goesOn;
        picture->user_data = const_cast<std::atomic_bool *>(&stopped);
        const int imported = inMemory.bands() == 4
                                 ? WebPPictureImportRGBA(picture.get(), samples, stride)
                                 : WebPPictureImportRGB(picture.get(), samples, stride);
        if (imported && WebPEncode(&config, picture.get()))
            return {reinterpret_cast<const char *>(writer.mem),
                    static_cast<qsizetype>(writer.size)};
        if (picture->error_code != VP8_ENC_ERROR_PARTITION0_OVERFLOW)
            break;
    }
    throw vips::VError("the WebP was not written");
}

QByteArray encodeAnimation(const VImage &image)
{
    return taken(image.webpsave_buffer(
        VImage::option()->set("Q", quality)->set("effort", effortFor(image))));
}

} // namespace

QByteArray encodeWebp(const VImage &image, const std::atomic_bool &stopped)
{
    const bool isAnimation = vips_image_get_page_height(image.get_image()) < image.height();
    const QByteArray webp = isAnimation ? encodeAnimation(image) : encodeStill(image, stopped);
    const QByteArray exif = exifBlock(image);
    // Even a plain call of libvips leaves an EXIF block in an animation.
    return isAnimation || !exif.isEmpty() ? strippedWebp(webp, exif).value_or(webp) : webp;
}

} // namespace pixpress
