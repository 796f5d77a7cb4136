// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/compressor.h"

#include <algorithm>
#include <thread>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

int coreCount()
{
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

Refusal noSuchOutput()
{
    return {404, "NotFound", u"There is no such output, or it is no longer kept."_s};
}

} // namespace

Refusal limitReached()
{
    return {429, "TooManyRequests", u"The monthly limit of compressions has been reached."_s};
}

Compressor::Compressor(const LocalServiceConfig &config)
    : m_maxPixels(config.maxPixels),
      m_store(config.storeBytes),
      m_meter(config.initialCount, config.monthlyLimit),
      m_pixels(config.maxPixels, coreCount())
{
}

std::expected<Encoded, Refusal> Compressor::output(const QByteArray &id) const
{
    auto entry = m_store.find(id);
    if (!entry)
        return std::unexpected(noSuchOutput());
    return std::move(entry->compressed);
}

std::expected<Compressor::Upload, Refusal> Compressor::shrink(const QByteArray &picture)
{
    const auto info = inspect(picture, m_maxPixels);
    if (!info)
        return std::unexpected(refusalFor(info.error()));
    const auto encoded = compressOnce(picture, *info, {});
    if (!encoded)
        return std::unexpected(encoded.error());
    return Upload{m_store.add({picture, *encoded}), *info, *encoded};
}

std::expected<Encoded, Refusal> Compressor::rework(const QByteArray &id, const QByteArray &options)
{
    const auto entry = m_store.find(id);
    if (!entry)
        return std::unexpected(noSuchOutput());
    const auto parsed = parseRequestOptions(options);
    if (!parsed)
        return std::unexpected(Refusal{400, "BadRequest", parsed.error()});
    if (*parsed == RequestOptions{})
        return entry->compressed;
    const auto info = inspect(entry->original, m_maxPixels);
    if (!info)
        return std::unexpected(refusalFor(info.error()));
    return compressOnce(entry->original, *info, *parsed);
}

void Compressor::stop()
{
    m_stopped = true;
    m_pixels.close();
}

/// Counted when it succeeds.
std::expected<Encoded, Refusal> Compressor::compressOnce(const QByteArray &original,
                                                         const PictureInfo &info,
                                                         const RequestOptions &options)
{
    auto reservation = m_meter.reserve();
    if (!reservation)
        return std::unexpected(limitReached());
    const auto pass = m_pixels.enter(info.pixels());
    auto encoded = pass ? compress(original, options, m_maxPixels, m_stopped)
                        : std::unexpected(serviceStopped());
    if (!encoded)
        return std::unexpected(refusalFor(encoded.error()));
    reservation->count();
    return *std::move(encoded);
}

} // namespace pixpress
