// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/jpegerrors.h"
#include "codec/jpegoutput.h"

#include <vips/vips8>

namespace pixpress {

/// Holds the coefficients of a picture before they are quantised, from which it writes files of any
/// quality.
class JpegEncoder
{
public:
    enum class Colours { fullSize, halfSize };

    /// `pixels` are in memory and opaque. Throws vips::VError.
    JpegEncoder(const vips::VImage &pixels, Colours colours, const std::atomic_bool &stopped);
    JpegEncoder(const JpegEncoder &) = delete;
    JpegEncoder &operator=(const JpegEncoder &) = delete;
    ~JpegEncoder();

    /// The file, with the EXIF block when there is one. Throws vips::VError, also when `stopped` is
    /// raised meanwhile.
    QByteArray encode(int quality, const QByteArray &exif);

private:
    bool transform(const vips::VImage &pixels, Colours colours);
    bool write(jpeg_compress_struct &target, int quality, const QByteArray &exif);
    void quantise(int quality);

    JpegErrors m_errors{};
    JpegMonitor m_monitor{};
    JpegOutput m_unquantised;
    QByteArray m_unquantisedBytes; ///< Read by m_source.
    jpeg_decompress_struct m_source{};
    jvirt_barray_ptr *m_coefficients = nullptr;
    jvirt_barray_ptr m_quantised[MAX_COMPONENTS]{};
};

} // namespace pixpress
