// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "localservice/answers.h"
#include "localservice/gate.h"
#include "localservice/localservice.h"
#include "localservice/meter.h"
#include "localservice/store.h"

#include <atomic>
#include <expected>

namespace pixpress {

Refusal limitReached();

/// The work behind the requests: compresses pictures, keeps them, and counts. As many at a time as
/// there are cores, and no more pixels than the largest picture may have; others wait. May be used
/// from any thread.
class Compressor
{
public:
    struct Upload
    {
        QByteArray id;
        PictureInfo info; ///< Of the original.
        Encoded output;
    };

    explicit Compressor(const LocalServiceConfig &config);

    qint64 count() const { return m_meter.count(); }
    bool isUsedUp() const { return m_meter.isUsedUp(); }
    std::expected<Encoded, Refusal> output(const QByteArray &id) const;

    std::expected<Upload, Refusal> shrink(const QByteArray &picture);

    /// The original of this id, treated as the JSON of `options` asks.
    std::expected<Encoded, Refusal> rework(const QByteArray &id, const QByteArray &options);

    /// Ends the work that goes on, and all that is to come.
    void stop();

private:
    std::expected<Encoded, Refusal> compressOnce(const QByteArray &original,
                                                 const PictureInfo &info,
                                                 const RequestOptions &options);

    const qint64 m_maxPixels;
    Store m_store;
    Meter m_meter;
    Gate m_pixels;
    std::atomic_bool m_stopped = false;
};

} // namespace pixpress
