// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/jpegencoder.h"

#include "codec/jpegtrellis.h"

namespace pixpress {

namespace {

/// Destroyed outside of the function that libjpeg leaves by longjmp.
struct JpegTarget : jpeg_compress_struct
{
    JpegTarget() : jpeg_compress_struct{} {}
    JpegTarget(const JpegTarget &) = delete;
    JpegTarget &operator=(const JpegTarget &) = delete;
    ~JpegTarget() { jpeg_destroy_compress(this); }
};

JDIMENSION roundedUp(JDIMENSION value, int step)
{
    const auto unit = static_cast<JDIMENSION>(step);
    return (value + unit - 1) / unit * unit;
}

} // namespace

JpegEncoder::JpegEncoder(const vips::VImage &pixels, Colours colours,
                         const std::atomic_bool &stopped)
{
    prepare(m_errors);
    prepare(m_monitor, stopped);
    m_source.err = &m_errors.base;
    if (!transform(pixels, colours))
        throw vips::VError("the JPEG was not written");
}

JpegEncoder::~JpegEncoder()
{
    jpeg_destroy_decompress(&m_source);
}

/// libjpeg converts and transforms, and stores the coefficients in steps of 1.
bool JpegEncoder::transform(const vips::VImage &pixels, Colours colours)
{
    JpegTarget target;
    target.err = &m_errors.base;
    if (setjmp(m_errors.escape) != 0)
        return false;
    jpeg_create_compress(&target);
    target.progress = &m_monitor.base;
    m_unquantised.attachTo(target);
    target.image_width = static_cast<JDIMENSION>(pixels.width());
    target.image_height = static_cast<JDIMENSION>(pixels.height());
    target.input_components = pixels.bands();
    target.in_color_space = pixels.bands() == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&target);
    jpeg_set_quality(&target, 100, TRUE);
    if (pixels.bands() > 1 && colours == Colours::fullSize)
        target.comp_info[0].h_samp_factor = target.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&target, TRUE);
    const auto stride = static_cast<size_t>(pixels.width()) * static_cast<size_t>(pixels.bands());
    auto *samples =
        static_cast<JSAMPLE *>(const_cast<void *>(vips_image_get_data(pixels.get_image())));
    while (target.next_scanline < target.image_height) {
        JSAMPROW row = samples + target.next_scanline * stride;
        jpeg_write_scanlines(&target, &row, 1);
    }
    jpeg_finish_compress(&target);
    m_unquantisedBytes = m_unquantised.bytes();

    jpeg_create_decompress(&m_source);
    m_source.progress = &m_monitor.base;
    jpeg_mem_src(&m_source, reinterpret_cast<const unsigned char *>(m_unquantisedBytes.constData()),
                 static_cast<unsigned long>(m_unquantisedBytes.size()));
    jpeg_read_header(&m_source, TRUE);
    for (int i = 0; i < m_source.num_components; ++i) {
        const jpeg_component_info &component = m_source.comp_info[i];
        m_quantised[i] = m_source.mem->request_virt_barray(
            reinterpret_cast<j_common_ptr>(&m_source), JPOOL_IMAGE, TRUE,
            roundedUp(component.width_in_blocks, component.h_samp_factor),
            roundedUp(component.height_in_blocks, component.v_samp_factor),
            static_cast<JDIMENSION>(component.v_samp_factor));
    }
    m_coefficients = jpeg_read_coefficients(&m_source);
    return true;
}

void JpegEncoder::quantise(int quality)
{
    const QuantTable table = quantTable(quality);
    const auto source = reinterpret_cast<j_common_ptr>(&m_source);
    for (int i = 0; i < m_source.num_components; ++i) {
        const jpeg_component_info &component = m_source.comp_info[i];
        for (JDIMENSION y = 0; y < component.height_in_blocks; ++y) {
            const JBLOCKARRAY in =
                m_source.mem->access_virt_barray(source, m_coefficients[i], y, 1, FALSE);
            const JBLOCKARRAY out =
                m_source.mem->access_virt_barray(source, m_quantised[i], y, 1, TRUE);
            for (JDIMENSION x = 0; x < component.width_in_blocks; ++x)
                quantiseBlock(in[0][x], table, out[0][x]);
            if (*m_monitor.stopped)
                return;
        }
    }
}

bool JpegEncoder::write(jpeg_compress_struct &target, int quality, const QByteArray &exif)
{
    if (setjmp(m_errors.escape) != 0)
        return false;
    jpeg_copy_critical_parameters(&m_source, &target);
    const QuantTable table = quantTable(quality);
    for (int i = 0; i < (m_source.num_components > 1 ? 2 : 1); ++i)
        jpeg_add_quant_table(&target, i, table.data(), 100, TRUE);
    quantise(quality);
    target.optimize_coding = TRUE;
    jpeg_simple_progression(&target);
    jpeg_write_coefficients(&target, m_quantised);
    if (!exif.isEmpty())
        jpeg_write_marker(&target, JPEG_APP0 + 1,
                          reinterpret_cast<const unsigned char *>(exif.constData()),
                          static_cast<unsigned>(exif.size()));
    jpeg_finish_compress(&target);
    return true;
}

QByteArray JpegEncoder::encode(int quality, const QByteArray &exif)
{
    JpegOutput output;
    JpegTarget target;
    target.err = &m_errors.base;
    jpeg_create_compress(&target);
    target.progress = &m_monitor.base;
    output.attachTo(target);
    if (!write(target, quality, exif) || *m_monitor.stopped)
        throw vips::VError("the JPEG was not written");
    return output.bytes();
}

} // namespace pixpress
