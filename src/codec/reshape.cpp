// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/reshape.h"

#include <vector>

namespace pixpress {

namespace {

using vips::VImage;

/// The part of `scaled` that the result shows: its most interesting one for a thumbnail, else the
/// middle.
VipsRect window(const VImage &scaled, PixelSize result, ResizeMode method)
{
    const int width = static_cast<int>(result.width);
    const int height = static_cast<int>(result.height);
    if (method == ResizeMode::thumb) {
        const VImage crop = scaled.smartcrop(
            width, height, VImage::option()->set("interesting", VIPS_INTERESTING_ATTENTION));
        return {-crop.xoffset(), -crop.yoffset(), width, height};
    }
    return {(scaled.width() - width) / 2, (scaled.height() - height) / 2, width, height};
}

VImage scaleFrame(const VImage &frame, PixelSize size)
{
    const double horizontal = static_cast<double>(size.width) / frame.width();
    const double vertical = static_cast<double>(size.height) / frame.height();
    auto *options = VImage::option()->set("vscale", vertical);
    if (!frame.has_alpha())
        return frame.resize(horizontal, options);
    // Else the colour under transparent pixels would bleed into the edges.
    return frame.premultiply().resize(horizontal, options).unpremultiply().cast(VIPS_FORMAT_UCHAR);
}

} // namespace

VImage resized(const VImage &image, const PictureInfo &info, const ResizePlan &plan,
               ResizeMode method)
{
    const int frameHeight = image.height() / static_cast<int>(info.frameCount);
    std::vector<VImage> frames;
    VipsRect area{};
    for (int i = 0; i < info.frameCount; ++i) {
        VImage frame =
            scaleFrame(image.crop(0, i * frameHeight, image.width(), frameHeight), plan.scaled);
        if (plan.result != plan.scaled) {
            // The same part of every frame, else the picture would jump about.
            if (i == 0) {
                frame = frame.copy_memory();
                area = window(frame, plan.result, method);
            }
            frame = frame.crop(area.left, area.top, area.width, area.height);
        }
        frames.push_back(frame);
    }
    VImage joined = frames.size() == 1
                        ? frames.front()
                        : VImage::arrayjoin(frames, VImage::option()->set("across", 1));
    joined = joined.copy_memory();
    if (frames.size() > 1)
        joined.set(VIPS_META_PAGE_HEIGHT, static_cast<int>(plan.result.height));
    return joined;
}

VImage flattened(const VImage &image, RequestOptions::Colour colour)
{
    const auto [red, green, blue] = colour;
    const bool isGrey = image.bands() < 3 && red == green && green == blue;
    const std::vector<double> background =
        isGrey ? std::vector<double>{double(red)}
               : std::vector<double>{double(red), double(green), double(blue)};
    const VImage source =
        image.bands() < 3 && !isGrey ? image.colourspace(VIPS_INTERPRETATION_sRGB) : image;
    return source.flatten(VImage::option()->set("background", background)).copy_memory();
}

} // namespace pixpress
