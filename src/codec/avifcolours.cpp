// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/avifcolours.h"

#include <lcms2.h>
#include <libheif/heif.h>

#include <algorithm>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// The primary picture of a file, with only its head read.
class AvifHead
{
public:
    explicit AvifHead(const QByteArray &file)
    {
        heif_image_handle *handle = nullptr;
        if (heif_context_read_from_memory_without_copy(m_context.get(), file.constData(),
                                                       static_cast<size_t>(file.size()), nullptr)
                    .code == heif_error_Ok &&
            heif_context_get_primary_image_handle(m_context.get(), &handle).code == heif_error_Ok)
            m_handle.reset(handle);
    }

    bool isReadable() const { return m_handle != nullptr; }
    bool hasAlpha() const { return heif_image_handle_has_alpha_channel(m_handle.get()) != 0; }
    bool hasProfile() const
    {
        return heif_image_handle_get_raw_color_profile_size(m_handle.get()) > 0;
    }

    struct Colours
    {
        int primaries;
        int transfer;
    };
    std::optional<Colours> namedColours() const
    {
        heif_color_profile_nclx *named = nullptr;
        if (heif_image_handle_get_nclx_color_profile(m_handle.get(), &named).code !=
                heif_error_Ok ||
            !named)
            return std::nullopt;
        const Colours colours{named->color_primaries, named->transfer_characteristics};
        heif_nclx_color_profile_free(named);
        return colours;
    }

private:
    std::unique_ptr<heif_context, decltype(&heif_context_free)> m_context{heif_context_alloc(),
                                                                          heif_context_free};
    std::unique_ptr<heif_image_handle, decltype(&heif_image_handle_release)> m_handle{
        nullptr, heif_image_handle_release};
};

// As ITU-T H.273 numbers them.
constexpr int bt709Primaries = 1;
constexpr int pal = 5;
constexpr int ntsc = 6;
constexpr int bt2020Primaries = 9;
constexpr int displayP3Primaries = 12;
constexpr int gamma22 = 4;
constexpr int gamma28 = 5;
constexpr int linear = 8;
constexpr int perceptualQuantiser = 16;
constexpr int hybridLogGamma = 18;

std::optional<cmsCIExyYTRIPLE> primariesOf(int number)
{
    switch (number) {
    case bt709Primaries: return cmsCIExyYTRIPLE{{0.64, 0.33, 1}, {0.30, 0.60, 1}, {0.15, 0.06, 1}};
    case pal: return cmsCIExyYTRIPLE{{0.64, 0.33, 1}, {0.29, 0.60, 1}, {0.15, 0.06, 1}};
    case ntsc:
    case ntsc + 1: return cmsCIExyYTRIPLE{{0.63, 0.34, 1}, {0.31, 0.595, 1}, {0.155, 0.07, 1}};
    case bt2020Primaries:
        return cmsCIExyYTRIPLE{{0.708, 0.292, 1}, {0.170, 0.797, 1}, {0.131, 0.046, 1}};
    case displayP3Primaries:
        return cmsCIExyYTRIPLE{{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
    default: return std::nullopt; // The table has more, which no camera writes.
    }
}

using ToneCurve = std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)>;

/// Every viewer shows the video primaries and transfer as sRGB.
ToneCurve curveOf(int transfer)
{
    constexpr double srgb[]{2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    constexpr int piecewise = 4;
    switch (transfer) {
    case gamma22: return {cmsBuildGamma(nullptr, 2.2), cmsFreeToneCurve};
    case gamma28: return {cmsBuildGamma(nullptr, 2.8), cmsFreeToneCurve};
    case linear: return {cmsBuildGamma(nullptr, 1.0), cmsFreeToneCurve};
    default: return {cmsBuildParametricToneCurve(nullptr, piecewise, srgb), cmsFreeToneCurve};
    }
}

} // namespace

bool canDecodeAvif()
{
    return heif_have_decoder_for_format(heif_compression_AV1) != 0;
}

bool canEncodeAvif()
{
    return heif_have_encoder_for_format(heif_compression_AV1) != 0;
}

QString unreadableAvifReason(const QByteArray &file)
{
    const AvifHead head(file);
    if (!head.isReadable())
        return {};
    const auto colours = head.namedColours();
    if (colours &&
        (colours->transfer == perceptualQuantiser || colours->transfer == hybridLogGamma))
        return u"HDR AVIF images are not supported."_s;
    constexpr qsizetype longestHead = 65'536; // Compressed data could hold the name by chance.
    if (!head.hasAlpha() &&
        file.first(std::min(file.size(), longestHead)).contains("systems:auxiliary:alpha"))
        return u"The transparency of this AVIF image cannot be read."_s;
    return {};
}

QByteArray profileOfNamedColours(const QByteArray &file)
{
    const AvifHead head(file);
    const auto colours =
        head.isReadable() && !head.hasProfile() ? head.namedColours() : std::nullopt;
    const auto primaries = colours ? primariesOf(colours->primaries) : std::nullopt;
    const bool isUsual = colours && colours->primaries == bt709Primaries &&
                         colours->transfer != gamma22 && colours->transfer != gamma28 &&
                         colours->transfer != linear;
    if (!primaries || isUsual)
        return {};
    const cmsCIExyY d65{0.3127, 0.3290, 1};
    const ToneCurve curve = curveOf(colours->transfer);
    cmsToneCurve *curves[]{curve.get(), curve.get(), curve.get()};
    const std::unique_ptr<void, decltype(&cmsCloseProfile)> profile(
        cmsCreateRGBProfile(&d65, &*primaries, curves), cmsCloseProfile);
    cmsUInt32Number size = 0;
    if (!profile || !cmsSaveProfileToMem(profile.get(), nullptr, &size))
        return {};
    QByteArray bytes(static_cast<qsizetype>(size), '\0');
    return cmsSaveProfileToMem(profile.get(), bytes.data(), &size) ? bytes : QByteArray();
}

} // namespace pixpress
