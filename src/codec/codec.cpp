// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"

#include "codec/avifcolours.h"
#include "codec/decode.h"
#include "codec/encode.h"
#include "codec/metadata.h"
#include "codec/reshape.h"
#include "codec/scans.h"
#include "codec/sniff.h"
#include "codec/strip.h"
#include "codec/vipslibrary.h"

#include <new>
#include <tuple>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

using vips::VImage;
using Fault = std::unexpected<CodecError>;

Fault fault(CodecFault fault, const QString &message)
{
    return Fault(CodecError{fault, message});
}

Fault damaged()
{
    return fault(CodecFault::unsupported, u"The image is damaged or incomplete."_s);
}

struct Opened
{
    VImage image;
    PictureInfo info;
};

std::expected<Opened, CodecError> open(const QByteArray &original, qint64 maxPixels)
{
    const auto sniffed = sniff(original);
    if (!sniffed)
        return fault(CodecFault::unsupported,
                     u"The file is not a PNG, JPEG, WebP or AVIF image."_s);
    if (sniffed->isAnimated && sniffed->format == ImageFormat::png)
        return fault(CodecFault::unsupported, u"Animated PNG images are not supported."_s);
    if (sniffed->isAnimated && sniffed->format == ImageFormat::avif)
        return fault(CodecFault::unsupported, u"AVIF image sequences are not supported."_s);
    if (sniffed->format == ImageFormat::jpeg) {
        const QString reason = unreadableJpegReason(original);
        if (!reason.isEmpty())
            return fault(CodecFault::unsupported, reason);
    }
    if (sniffed->format == ImageFormat::avif) {
        if (!canDecodeAvif())
            return fault(CodecFault::failed,
                         u"AVIF images cannot be read because libheif has no AV1 decoder. On "
                         "Debian and Ubuntu it is in the package libheif-plugin-dav1d."_s);
        const QString reason = unreadableAvifReason(original);
        if (!reason.isEmpty())
            return fault(CodecFault::unsupported, reason);
    }

    const auto tooLarge = [&] {
        return fault(CodecFault::tooLarge, u"The image has more than %1 pixels."_s.arg(maxPixels));
    };
    if (sniffed->format == ImageFormat::png) {
        const auto size = statedPngSize(original);
        if (size && size->width > 0 && size->height > maxPixels / size->width)
            return tooLarge();
    }
    try {
        const VImage image = openPicture(original, *sniffed);
        const PictureInfo info = describe(image, sniffed->format);
        if (info.pixels() > maxPixels)
            return tooLarge();
        const auto size = static_cast<size_t>(original.size());
        if (hasTooManyScans(image, vips::VSource::new_from_memory(original.constData(), size)))
            return fault(CodecFault::unsupported, u"The image would take too long to open."_s);
        return Opened{image, info};
    } catch (const vips::VError &) {
        vips_error_clear();
        return damaged();
    }
}

/// The longest side of a result in this format, in pixels.
qint64 maxSideOf(ImageFormat format)
{
    return format == ImageFormat::webp ? 16'383 : maxSide;
}

std::expected<Encoded, CodecError> encodeSmallest(const VImage &pixels, PixelSize size,
                                                  const RequestOptions &options,
                                                  const QList<ImageFormat> &formats,
                                                  const std::atomic_bool &stopped)
{
    Encoded smallest;
    bool isEncoderMissing = false;
    for (const ImageFormat format : formats) {
        if (format == ImageFormat::avif && !canEncodeAvif()) {
            isEncoderMissing = true;
            continue;
        }
        if (size.width > maxSideOf(format) || size.height > maxSideOf(format))
            continue;
        VImage image = pixels;
        const bool takesNoAlpha = format == ImageFormat::jpeg;
        if (image.has_alpha() && (options.background || takesNoAlpha))
            image = flattened(image,
                              options.background.value_or(RequestOptions::Colour{255, 255, 255}));
        image = withoutMetadata(image, options.preserve);
        stopWith(image, stopped);
        QByteArray bytes = encodePicture(image, format, stopped);
        if (smallest.bytes.isEmpty() || bytes.size() < smallest.bytes.size())
            smallest = {std::move(bytes), format, size};
    }
    if (smallest.bytes.isEmpty() && isEncoderMissing)
        return fault(CodecFault::failed,
                     u"AVIF images cannot be written because libheif has no AV1 encoder. On Debian "
                     "and Ubuntu it is in the package libheif-plugin-aomenc."_s);
    if (smallest.bytes.isEmpty())
        return fault(
            CodecFault::badRequest,
            u"An image of %1 x %2 pixels does not fit into the format asked for."_s.arg(size.width)
                .arg(size.height));
    return smallest;
}

/// The original as it is stored, without its metadata.
std::optional<QByteArray> strippedOriginal(const QByteArray &original, const Opened &opened,
                                           const Preserve &preserve)
{
    // An AVIF file tells elsewhere how its pixels are to be turned.
    const bool needsOrientation = vips_image_get_orientation(opened.image.get_image()) > 1 &&
                                  opened.info.format != ImageFormat::avif;
    return stripped(original, opened.info.format,
                    preservedExif(opened.image, preserve, needsOrientation));
}

/// What answers for a picture that is to keep its look: the compressed copy, or the original
/// without its metadata when that is no larger. An original whose pixels were to be turned or
/// converted steps in only when the copy is larger than the file was.
QByteArray smaller(const QByteArray &compressed, const QByteArray &original, const Opened &opened,
                   const Preserve &preserve)
{
    if (!isPlain(opened.image) && compressed.size() <= original.size())
        return compressed;
    const auto kept = strippedOriginal(original, opened, preserve);
    return kept && kept->size() <= compressed.size() ? *kept : compressed;
}

/// The original without its metadata if it is a WebP or AVIF as compact as those made here, which
/// the file does not say: not even at the highest quality does it get clearly smaller. Another
/// lossy pass would cost quality for next to nothing.
std::optional<QByteArray> compactOriginal(const QByteArray &original, const Opened &opened,
                                          const VImage &decoded, const Preserve &preserve,
                                          const std::atomic_bool &stopped)
{
    constexpr double clearly = 0.85;
    const ImageFormat format = opened.info.format;
    if ((format != ImageFormat::webp && format != ImageFormat::avif) || !isPlain(opened.image) ||
        opened.info.frameCount > 1)
        return std::nullopt;
    const auto kept = strippedOriginal(original, opened, preserve);
    if (!kept)
        return std::nullopt;
    const QByteArray finest = encodeFinest(withoutMetadata(decoded, {}), format, stopped);
    const bool isSmaller =
        static_cast<double>(finest.size()) < clearly * static_cast<double>(kept->size());
    return isSmaller ? std::nullopt : kept;
}

std::expected<Encoded, CodecError> work(const QByteArray &original, const RequestOptions &options,
                                        const Opened &opened, qint64 maxPixels,
                                        const std::atomic_bool &stopped)
{
    const PictureInfo &info = opened.info;
    const QList<ImageFormat> formats =
        options.convert.isEmpty() ? QList{info.format} : options.convert;
    if (info.frameCount > 1 && formats != QList{ImageFormat::webp})
        return fault(CodecFault::unsupported,
                     u"An animated WebP image cannot be converted without losing its frames."_s);

    const bool keepsFormat = formats == QList{info.format};
    QByteArray repacked;
    if (info.format == ImageFormat::jpeg) {
        const bool keepsPixels = keepsFormat && isPlain(opened.image) &&
                                 (!options.resize || planResize(info.frame, *options.resize) ==
                                                         ResizePlan{info.frame, info.frame});
        const auto direct =
            keepsPixels
                ? recompressJpeg(original, preservedExif(opened.image, options.preserve, false),
                                 stopped)
                : RecompressedJpeg{isJpegDamaged(original, stopped), false, {}};
        if (direct.isDamaged)
            return damaged();
        if (direct.isCompact && !direct.bytes.isEmpty())
            return Encoded{smaller(direct.bytes, original, opened, options.preserve), info.format,
                           info.frame};
        repacked = direct.bytes;
    }

    VImage decoded;
    try {
        decoded = decodePicture(opened.image, stopped);
    } catch (const vips::VError &) {
        vips_error_clear();
        return damaged();
    }
    const PixelSize source{decoded.width(), decoded.height() / info.frameCount};
    const ResizePlan plan =
        options.resize ? planResize(source, *options.resize) : ResizePlan{source, source};
    if (plan.scaled.width * info.frameCount > maxPixels / plan.scaled.height)
        return fault(CodecFault::badRequest,
                     u"The resized image would have more than %1 pixels."_s.arg(maxPixels));
    const bool keepsSize = plan == ResizePlan{source, source};
    const bool keepsLook = keepsSize && keepsFormat && !(options.background && decoded.has_alpha());
    if (keepsLook) {
        auto kept = compactOriginal(original, opened, decoded, options.preserve, stopped);
        if (kept)
            return Encoded{*std::move(kept), info.format, info.frame};
    }
    const VImage pixels = options.resize && !keepsSize
                              ? resized(decoded, info, plan, options.resize->method)
                              : decoded;
    auto encoded = encodeSmallest(pixels, plan.result, options, formats, stopped);
    if (encoded && !repacked.isEmpty() && repacked.size() < encoded->bytes.size())
        encoded->bytes = repacked;
    if (encoded && keepsLook)
        encoded->bytes = smaller(encoded->bytes, original, opened, options.preserve);
    return encoded;
}

} // namespace

void startCodec()
{
    startVips();
    std::ignore = canDecodeAvif(); // libheif loads its plugins
    std::ignore = canEncodeAvif();
    std::ignore = coreCount(); // read from files on some systems
}

std::expected<PictureInfo, CodecError> inspect(const QByteArray &original, qint64 maxPixels)
{
    startVips();
    const auto opened = open(original, maxPixels);
    if (!opened)
        return Fault(opened.error());
    return opened->info;
}

std::expected<Encoded, CodecError> compress(const QByteArray &original,
                                            const RequestOptions &options, qint64 maxPixels,
                                            const std::atomic_bool &stopped)
{
    startVips();
    const auto opened = open(original, maxPixels);
    if (!opened)
        return Fault(opened.error());
    std::expected<Encoded, CodecError> result;
    try {
        result = work(original, options, *opened, maxPixels, stopped);
    } catch (const vips::VError &) {
        vips_error_clear();
        result = fault(CodecFault::failed, u"The image could not be written."_s);
    } catch (const std::bad_alloc &) {
        result = fault(CodecFault::failed, u"There is not enough memory for this image."_s);
    }
    if (stopped)
        return Fault(serviceStopped());
    return result;
}

} // namespace pixpress
