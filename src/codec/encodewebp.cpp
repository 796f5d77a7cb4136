// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/encode.h"

#include "codec/metadata.h"
#include "codec/quality.h"
#include "codec/strip.h"
#include "codec/vipslibrary.h"

#include <webp/encode.h>

#include <memory>

namespace pixpress {

namespace {

using vips::VImage;

constexpr int animationQuality = 80;
constexpr QualityRange qualities{60, 84, 90, 0.75};

// The encoder's method: a higher one takes more time per pixel.
constexpr int trialEffort = 3;
constexpr int effort = 6;
constexpr int effortForGraphics = 5; // With 6, fine patterns can take a hundred times as long.
constexpr int effortForMany = 2;

struct PictureDeleter
{
    void operator()(WebPPicture *picture) const
    {
        WebPPictureFree(picture);
        delete picture;
    }
};
using Picture = std::unique_ptr<WebPPicture, PictureDeleter>;

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

bool hasManyPixels(const VImage &image)
{
    return static_cast<qint64>(image.width()) * image.height() > 30'000'000;
}

[[noreturn]] void fail()
{
    throw vips::VError("the WebP was not written");
}

/// The pixels as libwebp has them. Called directly since libvips gives no way to limit the first
/// partition.
Picture imported(const VImage &pixels, bool asColours, const std::atomic_bool &stopped)
{
    Picture picture(new WebPPicture);
    if (!WebPPictureInit(picture.get()))
        fail();
    picture->width = pixels.width();
    picture->height = pixels.height();
    picture->use_argb = asColours;
    picture->progress_hook = goesOn;
    picture->user_data = const_cast<std::atomic_bool *>(&stopped);
    const auto *samples = static_cast<const uint8_t *>(vips_image_get_data(pixels.get_image()));
    const int stride = pixels.width() * pixels.bands();
    if (!(pixels.bands() == 4 ? WebPPictureImportRGBA(picture.get(), samples, stride)
                              : WebPPictureImportRGB(picture.get(), samples, stride)))
        fail();
    return picture;
}

QByteArray encode(WebPPicture &picture, const WebPConfig &config)
{
    Writer writer;
    picture.writer = WebPMemoryWrite;
    picture.custom_ptr = static_cast<WebPMemoryWriter *>(&writer);
    if (!WebPEncode(&config, &picture))
        return {};
    return {reinterpret_cast<const char *>(writer.mem), static_cast<qsizetype>(writer.size)};
}

WebPConfig makeConfig()
{
    WebPConfig config;
    if (!WebPConfigInit(&config))
        fail();
    config.thread_level = 1;
    return config;
}

/// None when the work is stopped.
QByteArray encodeLossy(WebPPicture &picture, int quality, int method)
{
    WebPConfig config = makeConfig();
    config.quality = static_cast<float>(quality);
    config.method = method;
    // The format has room for only 512 kB in the first partition: very large, very detailed
    // pictures do not fit without a limit.
    for (const int partitionLimit : {0, 70, 100}) {
        config.partition_limit = partitionLimit;
        const QByteArray bytes = encode(picture, config);
        if (!bytes.isEmpty() || picture.error_code == VP8_ENC_ERROR_USER_ABORT)
            return bytes;
        if (picture.error_code != VP8_ENC_ERROR_PARTITION0_OVERFLOW)
            break;
    }
    fail();
}

/// Exact, or with `nearness` below 100 off by a little where that helps. `level` is 0 to 9.
QByteArray encodeLossless(const VImage &pixels, int level, int nearness,
                          const std::atomic_bool &stopped)
{
    const Picture picture = imported(pixels, true, stopped);
    WebPConfig config = makeConfig();
    if (!WebPConfigLosslessPreset(&config, level))
        fail();
    config.near_lossless = nearness;
    const QByteArray bytes = encode(*picture, config);
    if (bytes.isEmpty() && picture->error_code != VP8_ENC_ERROR_USER_ABORT)
        fail();
    return bytes;
}

/// The smallest of the ways to write a graphic that look right; `lossy` is empty when it does not.
QByteArray encodeGraphic(const VImage &pixels, const QByteArray &lossy,
                         const std::atomic_bool &stopped)
{
    constexpr int quickLevel = 0;
    constexpr int level = 6;
    constexpr int exact = 100;
    constexpr int near = 60;
    // The better levels gain up to half of the bytes, at fifty times the cost.
    const QByteArray quick = encodeLossless(pixels, quickLevel, exact, stopped);
    if (!lossy.isEmpty() && quick.size() > 2 * lossy.size())
        return lossy;
    QByteArray best = encodeLossless(pixels, level, exact, stopped);
    if (lossy.isEmpty() || lossy.size() < best.size()) {
        const QByteArray approximate = encodeLossless(pixels, level, near, stopped);
        // An inexact result must be clearly smaller than the exact one.
        if (approximate.size() < best.size() * 9 / 10)
            best = approximate;
    }
    return !lossy.isEmpty() && lossy.size() < best.size() ? lossy : best;
}

VImage inMemory(const VImage &image)
{
    return (image.bands() < 3 ? image.colourspace(VIPS_INTERPRETATION_sRGB) : image).copy_memory();
}

/// Sharp, unless there are many: with the colours at half the size, thin coloured lines would fade.
Picture importedForLossy(const VImage &pixels, const std::atomic_bool &stopped)
{
    const bool isSharp = !hasManyPixels(pixels);
    Picture picture = imported(pixels, isSharp, stopped);
    if (isSharp && !WebPPictureSharpARGBToYUVA(picture.get()))
        fail();
    return picture;
}

QByteArray encodeStill(const VImage &image, const std::atomic_bool &stopped)
{
    const VImage pixels = inMemory(image);
    const bool isLarge = hasManyPixels(pixels);
    Picture picture = importedForLossy(pixels, stopped);
    const auto [quality, similarity] =
        chooseQuality(pixels, ImageFormat::webp, qualities, [&](int q) {
            return encodeLossy(*picture, q, isLarge ? effortForMany : trialEffort);
        });
    if (stopped)
        return {};
    const bool isDrawn = isGraphic(pixels);
    const int finalEffort = isLarge ? effortForMany : isDrawn ? effortForGraphics : effort;
    const QByteArray lossy = encodeLossy(*picture, quality, finalEffort);
    picture.reset();
    if (stopped)
        return {};
    const bool isGood = similarity >= lowestSimilarity;
    if (isGood && !isDrawn)
        return lossy;
    return encodeGraphic(pixels, isGood ? lossy : QByteArray(), stopped);
}

QByteArray encodeAnimation(const VImage &image)
{
    return taken(
        image.webpsave_buffer(VImage::option()
                                  ->set("Q", animationQuality)
                                  ->set("effort", hasManyPixels(image) ? effortForMany : 4)));
}

} // namespace

QByteArray encodeFinestWebp(const VImage &image, const std::atomic_bool &stopped)
{
    return encodeLossy(*importedForLossy(inMemory(image), stopped), qualities.highest,
                       hasManyPixels(image) ? effortForMany : trialEffort);
}

QByteArray encodeWebp(const VImage &image, const std::atomic_bool &stopped)
{
    const bool isAnimation = vips_image_get_page_height(image.get_image()) < image.height();
    const QByteArray webp = isAnimation ? encodeAnimation(image) : encodeStill(image, stopped);
    const QByteArray exif = exifBlock(image);
    // Even a plain call of libvips leaves an EXIF block in an animation.
    return isAnimation || !exif.isEmpty() ? strippedWebp(webp, exif).value_or(webp) : webp;
}

} // namespace pixpress
