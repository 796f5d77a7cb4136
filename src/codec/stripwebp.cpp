// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/strip.h"

#include "codec/metadata.h"

#include <webp/mux.h>

#include <memory>

namespace pixpress {

namespace {

using Mux = std::unique_ptr<WebPMux, decltype(&WebPMuxDelete)>;

WebPData viewOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const uint8_t *>(bytes.constData()),
            static_cast<size_t>(bytes.size())};
}

struct Frame : WebPMuxFrameInfo
{
    Frame() : WebPMuxFrameInfo{} {}
    Frame(const Frame &) = delete;
    Frame &operator=(const Frame &) = delete;
    ~Frame() { WebPDataClear(&bitstream); }
};

bool copyAnimation(const WebPMux *from, WebPMux *to)
{
    WebPMuxAnimParams parameters{};
    int width = 0;
    int height = 0;
    int count = 0;
    if (WebPMuxGetAnimationParams(from, &parameters) != WEBP_MUX_OK ||
        WebPMuxSetAnimationParams(to, &parameters) != WEBP_MUX_OK ||
        WebPMuxGetCanvasSize(from, &width, &height) != WEBP_MUX_OK ||
        WebPMuxSetCanvasSize(to, width, height) != WEBP_MUX_OK ||
        WebPMuxNumChunks(from, WEBP_CHUNK_ANMF, &count) != WEBP_MUX_OK)
        return false;
    for (int i = 1; i <= count; ++i) {
        Frame frame;
        if (WebPMuxGetFrame(from, static_cast<uint32_t>(i), &frame) != WEBP_MUX_OK ||
            WebPMuxPushFrame(to, &frame, 1) != WEBP_MUX_OK)
            return false;
    }
    return true;
}

bool copyStill(const WebPMux *from, WebPMux *to)
{
    Frame frame;
    return WebPMuxGetFrame(from, 1, &frame) == WEBP_MUX_OK &&
           WebPMuxSetImage(to, &frame.bitstream, 1) == WEBP_MUX_OK;
}

bool copyProfile(const WebPMux *from, WebPMux *to)
{
    WebPData profile{};
    return WebPMuxGetChunk(from, "ICCP", &profile) == WEBP_MUX_OK &&
           WebPMuxSetChunk(to, "ICCP", &profile, 1) == WEBP_MUX_OK;
}

} // namespace

std::optional<QByteArray> strippedWebp(const QByteArray &file, const QByteArray &exif)
{
    const WebPData data = viewOf(file);
    const Mux source(WebPMuxCreate(&data, 0), WebPMuxDelete);
    const Mux target(WebPMuxNew(), WebPMuxDelete);
    uint32_t features = 0;
    if (!source || !target || WebPMuxGetFeatures(source.get(), &features) != WEBP_MUX_OK)
        return std::nullopt;
    const bool isAnimation = (features & ANIMATION_FLAG) != 0;
    if (!(isAnimation ? copyAnimation : copyStill)(source.get(), target.get()))
        return std::nullopt;
    if ((features & ICCP_FLAG) != 0 && !copyProfile(source.get(), target.get()))
        return std::nullopt;
    const QByteArray tiff = tiffOf(exif).toByteArray();
    const WebPData chunk = viewOf(tiff);
    if (!tiff.isEmpty() && WebPMuxSetChunk(target.get(), "EXIF", &chunk, 1) != WEBP_MUX_OK)
        return std::nullopt;
    WebPData assembled{};
    if (WebPMuxAssemble(target.get(), &assembled) != WEBP_MUX_OK)
        return std::nullopt;
    QByteArray result(reinterpret_cast<const char *>(assembled.bytes),
                      static_cast<qsizetype>(assembled.size));
    WebPDataClear(&assembled);
    return result;
}

} // namespace pixpress
