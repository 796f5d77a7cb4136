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
constexpr QualityRange qualities{60, 84, maxWebpQuality, 0.75};

// Of the encoder's method; its time grows with the pixels, and somebody waits.
constexpr int trialEffort = 3;
constexpr int effort = 6;
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

/// Exact, or with `nearness` below 100 off by a little where that helps.
QByteArray encodeLossless(WebPPicture &picture, int nearness)
{
    constexpr int losslessEffort = 6; // Of 9.
    WebPConfig config = makeConfig();
    if (!WebPConfigLosslessPreset(&config, losslessEffort))
        fail();
    config.near_lossless = nearness;
    const QByteArray bytes = encode(picture, config);
    if (bytes.isEmpty() && picture.error_code != VP8_ENC_ERROR_USER_ABORT)
        fail();
    return bytes;
}

/// The smallest of the ways to write a graphic that look right. What is exact wins a tie.
QByteArray encodeGraphic(const VImage &pixels, const QByteArray &lossy, bool isLossyGood,
                         const std::atomic_bool &stopped)
{
    constexpr int nearness = 60;
    const Picture colours = imported(pixels, true, stopped);
    QByteArray best = encodeLossless(*colours, 100);
    // A second pass costs as much again: not for what exactness has won clearly.
    if (isLossyGood && best.size() < lossy.size() * 3 / 4)
        return best;
    const QByteArray near = encodeLossless(*imported(pixels, true, stopped), nearness);
    if (near.size() < best.size() * 95 / 100 &&
        (near.isEmpty() || similarityOf(near, ImageFormat::webp, pixels) >= lowestSimilarity))
        best = near;
    return isLossyGood && lossy.size() < best.size() ? lossy : best;
}

QByteArray encodeStill(const VImage &image, const std::atomic_bool &stopped)
{
    const VImage pixels =
        (image.bands() < 3 ? image.colourspace(VIPS_INTERPRETATION_sRGB) : image).copy_memory();
    const bool isLarge = hasManyPixels(pixels);
    Picture picture = imported(pixels, !isLarge, stopped);
    // Sharp: with the colours at half the size, thin coloured lines would fade.
    if (!isLarge && !WebPPictureSharpARGBToYUVA(picture.get()))
        fail();
    const auto [quality, similarity] =
        chooseQuality(pixels, ImageFormat::webp, qualities, [&](int q) {
            return encodeLossy(*picture, q, isLarge ? effortForMany : trialEffort);
        });
    QByteArray lossy =
        stopped ? QByteArray() : encodeLossy(*picture, quality, isLarge ? effortForMany : effort);
    picture.reset();
    if (stopped)
        return {};
    const bool isGood = similarity >= lowestSimilarity;
    return !isGood || isGraphic(pixels) ? encodeGraphic(pixels, lossy, isGood, stopped) : lossy;
}

QByteArray encodeAnimation(const VImage &image)
{
    return taken(
        image.webpsave_buffer(VImage::option()
                                  ->set("Q", animationQuality)
                                  ->set("effort", hasManyPixels(image) ? effortForMany : 4)));
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
