// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/encode.h"

#include "codec/jpegerrors.h"
#include "codec/jpegoutput.h"
#include "codec/jpegtables.h"

#include <algorithm>
#include <iterator>
#include <numeric>

namespace pixpress {

namespace {

/// On libjpeg's scale, about what results have.
constexpr int usualQuality = 82;

/// The quality on libjpeg's scale that the luminance table stands for, by its mean step.
int estimatedQuality(const JQUANT_TBL &table)
{
    constexpr int standardSum = 3688; // Of libjpeg's luminance table at quality 50.
    const int sum = std::accumulate(std::begin(table.quantval), std::end(table.quantval), 0);
    const int scale = 100 * sum / standardSum;
    return scale <= 100 ? (200 - scale) / 2 : 5000 / scale;
}

bool isOwn(const JQUANT_TBL &table)
{
    for (int quality = 1; quality <= 100; ++quality) {
        if (std::ranges::equal(table.quantval, quantTable(quality)))
            return true;
    }
    return false;
}

class Recompression
{
public:
    Recompression(const QByteArray &original, const QByteArray &exif,
                  const std::atomic_bool &stopped)
        : m_original(original), m_exif(exif)
    {
        prepare(m_errors);
        prepare(m_monitor, stopped);
        m_source.err = m_target.err = &m_errors.base;
    }
    Recompression(const Recompression &) = delete;
    Recompression &operator=(const Recompression &) = delete;
    ~Recompression()
    {
        jpeg_destroy_compress(&m_target);
        jpeg_destroy_decompress(&m_source);
    }

    // One of them, once. Each ends early after an error, and then leaves no bytes.
    void check();  ///< Reads all, to learn of damage.
    void repack(); ///< Packs the same pixels better, without loss.

    bool isDamaged() const { return m_errors.isDamaged; }
    /// Whether it was made here, or is of no higher quality than what is made here.
    bool isCompact() const { return m_isCompact; }
    QByteArray bytes() const { return m_isComplete ? m_output.bytes() : QByteArray(); }

private:
    void open();
    bool hasPlainColours() const
    {
        return m_source.jpeg_color_space == JCS_YCbCr || m_source.jpeg_color_space == JCS_GRAYSCALE;
    }
    void prepareTarget();
    void startFile();

    const QByteArray &m_original;
    const QByteArray &m_exif;
    JpegErrors m_errors{};
    JpegMonitor m_monitor{};
    jpeg_decompress_struct m_source{};
    jpeg_compress_struct m_target{};
    JpegOutput m_output;
    bool m_isComplete = false;
    bool m_isCompact = false;
};

void Recompression::open()
{
    jpeg_create_decompress(&m_source);
    jpeg_create_compress(&m_target);
    m_source.progress = m_target.progress = &m_monitor.base;
    jpeg_mem_src(&m_source, reinterpret_cast<const unsigned char *>(m_original.constData()),
                 static_cast<unsigned long>(m_original.size()));
    jpeg_read_header(&m_source, TRUE);
    m_output.attachTo(m_target);
    const int number = m_source.comp_info[0].quant_tbl_no; // as the file has it, unchecked
    const JQUANT_TBL *table =
        number >= 0 && number < NUM_QUANT_TBLS ? m_source.quant_tbl_ptrs[number] : nullptr;
    m_isCompact = table && (estimatedQuality(*table) <= usualQuality || isOwn(*table));
}

void Recompression::prepareTarget()
{
    m_target.optimize_coding = TRUE;
    jpeg_simple_progression(&m_target);
}

/// Once the header is written.
void Recompression::startFile()
{
    if (!m_exif.isEmpty())
        jpeg_write_marker(&m_target, JPEG_APP0 + 1,
                          reinterpret_cast<const unsigned char *>(m_exif.constData()),
                          static_cast<unsigned>(m_exif.size()));
}

void Recompression::check()
{
    if (setjmp(m_errors.escape) != 0)
        return;
    open();
    jpeg_read_coefficients(&m_source);
}

void Recompression::repack()
{
    if (setjmp(m_errors.escape) != 0)
        return;
    open();
    jvirt_barray_ptr *coefficients = jpeg_read_coefficients(&m_source);
    if (!hasPlainColours())
        return;
    jpeg_copy_critical_parameters(&m_source, &m_target);
    prepareTarget();
    jpeg_write_coefficients(&m_target, coefficients);
    startFile();
    jpeg_finish_compress(&m_target);
    jpeg_finish_decompress(&m_source);
    m_isComplete = true;
}

} // namespace

bool isJpegDamaged(const QByteArray &original, const std::atomic_bool &stopped)
{
    const QByteArray none;
    Recompression checking(original, none, stopped);
    checking.check();
    return checking.isDamaged();
}

RecompressedJpeg recompressJpeg(const QByteArray &original, const QByteArray &exif,
                                const std::atomic_bool &stopped)
{
    Recompression repacking(original, exif, stopped);
    repacking.repack();
    return {repacking.isDamaged(), repacking.isCompact(), repacking.bytes()};
}

} // namespace pixpress
