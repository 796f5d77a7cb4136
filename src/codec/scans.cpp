// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/scans.h"

#include <QByteArrayView>

#include <algorithm>
#include <array>

namespace pixpress {

namespace {

constexpr int maxScans = 100;
/// Pixels times scans: some 20 seconds. A progressive picture has ten scans mostly.
constexpr qint64 maxWork = 4'000'000'000;

/// Counts the scans of a JPEG that is given piece by piece.
class ScanCounter
{
public:
    int scans() const { return m_scans; }
    /// At the end of the image. Other pictures can follow, or a film.
    bool isAtEnd() const { return m_place == Place::end; }

    void add(QByteArrayView piece)
    {
        qsizetype at = 0;
        while (at < piece.size() && !isAtEnd()) {
            if (m_place == Place::data) {
                at = piece.indexOf('\xff', at);
                if (at < 0)
                    return;
                ++at;
                m_place = Place::marker;
            } else if (m_place == Place::segment) {
                const qsizetype skipped = std::min(m_left, piece.size() - at);
                at += skipped;
                m_left -= skipped;
                if (m_left == 0)
                    m_place = Place::data;
            } else {
                addByte(static_cast<quint8>(piece[at++]));
            }
        }
    }

private:
    enum class Place { data, marker, lengthHigh, lengthLow, segment, end };

    void addByte(quint8 byte)
    {
        if (m_place == Place::marker) {
            addMarker(byte);
        } else if (m_place == Place::lengthHigh) {
            m_left = byte << 8;
            m_place = Place::lengthLow;
        } else {
            m_left = std::max<qsizetype>(m_left + byte - 2, 0); // It counts itself.
            m_place = m_left > 0 ? Place::segment : Place::data;
        }
    }

    /// Takes what follows 0xff.
    void addMarker(quint8 code)
    {
        constexpr quint8 startOfImage = 0xd8;
        constexpr quint8 endOfImage = 0xd9;
        constexpr quint8 startOfScan = 0xda;
        const bool isRestart = code >= 0xd0 && code <= 0xd7;
        if (code == 0xff) // It may be repeated.
            return;
        if (code == endOfImage)
            m_place = Place::end;
        else if (code <= 1 || isRestart || code == startOfImage) // They have no length.
            m_place = Place::data;
        else
            m_place = Place::lengthHigh;
        m_scans += code == startOfScan;
    }

    Place m_place = Place::data;
    qsizetype m_left = 0; ///< Bytes of the segment.
    int m_scans = 0;
};

} // namespace

bool hasTooManyScans(const vips::VImage &opened, const vips::VSource &source)
{
    if (vips_image_get_typeof(opened.get_image(), "jpeg-multiscan") == 0)
        return false;
    const qint64 pixels = qint64{opened.width()} * opened.height();
    const qint64 most = std::min<qint64>(maxScans, maxWork / pixels);
    VipsSource *const bytes = source.get_source();
    if (vips_source_rewind(bytes) != 0)
        throw vips::VError();
    ScanCounter counter;
    std::array<char, 65'536> buffer;
    while (!counter.isAtEnd() && counter.scans() <= most) {
        const gint64 count = vips_source_read(bytes, buffer.data(), buffer.size());
        if (count < 0)
            throw vips::VError();
        if (count == 0)
            break;
        counter.add(QByteArrayView(buffer.data(), count));
    }
    return counter.scans() > most;
}

} // namespace pixpress
