// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/decode.h"

#include "codec/avifcolours.h"
#include "codec/vipslibrary.h"

#include <memory>

namespace pixpress {

namespace {

using vips::VImage;

struct BlobDeleter
{
    void operator()(VipsBlob *blob) const { vips_area_unref(reinterpret_cast<VipsArea *>(blob)); }
};

bool isGrey(const VImage &image)
{
    return image.interpretation() == VIPS_INTERPRETATION_B_W ||
           image.interpretation() == VIPS_INTERPRETATION_GREY16;
}

bool hasProfile(const VImage &image)
{
    return vips_image_get_typeof(image.get_image(), VIPS_META_ICC_NAME) != 0;
}

/// Any alpha band is converted beside the colours: icc_transform() would leave it at 16 bits.
VImage throughProfile(const VImage &image)
{
    const bool isCmyk = image.interpretation() == VIPS_INTERPRETATION_CMYK;
    const int colourBands = image.bands() - (image.has_alpha() ? 1 : 0);
    const VImage colours =
        image.extract_band(0, VImage::option()->set("n", colourBands))
            .icc_transform("srgb", VImage::option()
                                       ->set("embedded", true)
                                       ->set("input_profile", isCmyk ? "cmyk" : "srgb")
                                       ->set("intent", VIPS_INTENT_RELATIVE)
                                       ->set("black_point_compensation", true)
                                       ->set("depth", 8));
    if (!image.has_alpha())
        return colours;
    const VImage alpha = image[colourBands];
    return colours.bandjoin(
        alpha.format() == VIPS_FORMAT_USHORT ? (alpha >> 8).cast(VIPS_FORMAT_UCHAR) : alpha);
}

/// Whether the embedded profile is sRGB by another name, found out by converting a few colours: the
/// most frequent profile by far, and the costly conversion would change nothing but roundings.
bool isProfileSrgb(const VImage &image)
{
    if (image.interpretation() != VIPS_INTERPRETATION_sRGB)
        return false;
    constexpr int steps = 6;
    VImage colours =
        VImage::identity(VImage::option()->set("bands", 1)->set("size", steps * steps * steps));
    const VImage index = colours.cast(VIPS_FORMAT_INT);
    colours = (index / (steps * steps))
                  .cast(VIPS_FORMAT_INT)
                  .bandjoin((index / steps).cast(VIPS_FORMAT_INT) % steps)
                  .bandjoin(index % steps);
    colours = (colours * (255.0 / (steps - 1)))
                  .cast(VIPS_FORMAT_UCHAR)
                  .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
    const void *profile = nullptr;
    size_t size = 0;
    if (vips_image_get_blob(image.get_image(), VIPS_META_ICC_NAME, &profile, &size) != 0)
        return false;
    vips_image_set_blob_copy(colours.get_image(), VIPS_META_ICC_NAME, profile, size);
    try {
        return (throughProfile(colours) - colours).abs().max() <= 2;
    } catch (const vips::VError &) {
        vips_error_clear();
        return true; // Unreadable: nothing better is known than sRGB.
    }
}

bool needsColourConversion(const VImage &image)
{
    return image.interpretation() == VIPS_INTERPRETATION_CMYK ||
           (hasProfile(image) && !isProfileSrgb(image));
}

VImage toSrgb(VImage image)
{
    if (needsColourConversion(image)) {
        const bool wasGrey = isGrey(image);
        try {
            image = throughProfile(image);
            if (wasGrey) // All three are the same: what follows has a third of the work.
                image = image.has_alpha() ? image[0].bandjoin(image[image.bands() - 1])
                                          : VImage(image[0]);
            if (wasGrey)
                image =
                    image.copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_B_W));
        } catch (const vips::VError &) {
            vips_error_clear(); // A broken profile is no reason to refuse the picture.
        }
    }
    image = image.colourspace(isGrey(image) ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB);
    if (image.format() != VIPS_FORMAT_UCHAR)
        image = image.cast(VIPS_FORMAT_UCHAR);
    return image;
}

} // namespace

VImage openPicture(const QByteArray &bytes, const Sniffed &sniffed)
{
    const std::unique_ptr<VipsBlob, BlobDeleter> blob(
        vips_blob_new(nullptr, bytes.constData(), static_cast<size_t>(bytes.size())));
    // Sequential: random access would decode a large picture to a file on the disk. Half a picture
    // is an error, a harmless warning of the decoder is not.
    auto *options =
        VImage::option()->set("access", VIPS_ACCESS_SEQUENTIAL)->set("fail_on", VIPS_FAIL_ON_ERROR);
    switch (sniffed.format) {
    case ImageFormat::png: return VImage::pngload_buffer(blob.get(), options);
    case ImageFormat::jpeg: return VImage::jpegload_buffer(blob.get(), options);
    case ImageFormat::webp:
        return VImage::webpload_buffer(blob.get(),
                                       sniffed.isAnimated ? options->set("n", -1) : options);
    case ImageFormat::avif: {
        VImage image = VImage::heifload_buffer(blob.get(), options);
        const QByteArray profile = profileOfNamedColours(bytes);
        if (!profile.isEmpty()) {
            image = image.copy();
            vips_image_set_blob_copy(image.get_image(), VIPS_META_ICC_NAME, profile.constData(),
                                     static_cast<size_t>(profile.size()));
        }
        return image;
    }
    }
    Q_UNREACHABLE();
}

PictureInfo describe(const VImage &opened, ImageFormat format)
{
    const int frameHeight = vips_image_get_page_height(opened.get_image());
    return {format, {opened.width(), frameHeight}, opened.height() / frameHeight};
}

bool isPlain(const VImage &opened)
{
    return vips_image_get_orientation(opened.get_image()) == 1 && !needsColourConversion(opened);
}

VImage decodePicture(VImage opened, const std::atomic_bool &stopped)
{
    stopWith(opened, stopped);
    VImage image = toSrgb(opened).copy_memory();
    if (vips_image_get_orientation(image.get_image()) > 1)
        image = image.autorot().copy_memory();
    if (image.has_alpha() && image[image.bands() - 1].min() == 255)
        image = image.extract_band(0, VImage::option()->set("n", image.bands() - 1)).copy_memory();
    useAllThreads(image);
    return image;
}

} // namespace pixpress
