// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/metadata.h"

#include <QSet>

#include <libexif/exif-data.h>
#include <vips/vips8>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace pixpress {

namespace {

constexpr QByteArrayView exifIdentifier("Exif\0\0", 6);

using ExifPointer = std::unique_ptr<ExifData, decltype(&exif_data_unref)>;

/// What is kept: what a request names, and in files whose pixels are not turned how to turn them.
struct Kept : Preserve
{
    bool orientation = false;
};

bool isKept(ExifIfd ifd, ExifTag tag, const Kept &kept)
{
    if (ifd == EXIF_IFD_GPS)
        return kept.location;
    if (ifd != EXIF_IFD_0 && ifd != EXIF_IFD_EXIF)
        return false;
    switch (static_cast<int>(tag)) {
    case EXIF_TAG_ORIENTATION: return kept.orientation && ifd == EXIF_IFD_0;
    case EXIF_TAG_COPYRIGHT:
    case EXIF_TAG_ARTIST:
    case EXIF_TAG_XP_AUTHOR: return kept.copyright;
    case EXIF_TAG_DATE_TIME:
    case EXIF_TAG_DATE_TIME_ORIGINAL:
    case EXIF_TAG_DATE_TIME_DIGITIZED:
    case EXIF_TAG_SUB_SEC_TIME:
    case EXIF_TAG_SUB_SEC_TIME_ORIGINAL:
    case EXIF_TAG_SUB_SEC_TIME_DIGITIZED:
    case EXIF_TAG_OFFSET_TIME:
    case EXIF_TAG_OFFSET_TIME_ORIGINAL:
    case EXIF_TAG_OFFSET_TIME_DIGITIZED: return kept.creation;
    default: return false; // An open set: whatever else a camera writes.
    }
}

ExifPointer parse(const QByteArray &block)
{
    ExifPointer data(exif_data_new(), exif_data_unref);
    // Neither invent mandatory entries nor correct those that are there.
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
    exif_data_load_data(data.get(), reinterpret_cast<const unsigned char *>(block.constData()),
                        static_cast<unsigned>(block.size()));
    return data;
}

/// Removes the entries that are not kept and returns the names under which libvips lists the rest.
QSet<QByteArray> filter(ExifData *data, const Kept &kept)
{
    QSet<QByteArray> names;
    for (int index = 0; index < EXIF_IFD_COUNT; ++index) {
        const auto ifd = static_cast<ExifIfd>(index);
        ExifContent *content = data->ifd[index];
        const std::vector<ExifEntry *> entries(content->entries, content->entries + content->count);
        for (ExifEntry *entry : entries) {
            if (!isKept(ifd, entry->tag, kept)) {
                exif_content_remove_entry(content, entry);
            } else if (const char *name = exif_tag_get_name_in_ifd(entry->tag, ifd)) {
                names.insert("exif-ifd" + QByteArray::number(index) + '-' + name);
            }
        }
    }
    // The embedded thumbnail shows what the picture once showed.
    std::free(data->data);
    data->data = nullptr;
    data->size = 0;
    return names;
}

QByteArray serialise(ExifData *data)
{
    unsigned char *bytes = nullptr;
    unsigned size = 0;
    exif_data_save_data(data, &bytes, &size);
    QByteArray block(reinterpret_cast<const char *>(bytes), size);
    std::free(bytes);
    return block;
}

} // namespace

vips::VImage withoutMetadata(const vips::VImage &image, const Preserve &preserve)
{
    QSet<QByteArray> kept{"n-pages",  "page-height",        "delay", "gif-delay", "loop",
                          "gif-loop", VIPS_META_CONCURRENCY};
    QByteArray block = preserve.any() ? exifBlock(image) : QByteArray();
    if (!block.isEmpty()) {
        const ExifPointer data = parse(block);
        const QSet<QByteArray> names = filter(data.get(), {preserve});
        block = names.isEmpty() ? QByteArray() : serialise(data.get());
        kept.unite(names);
    }

    vips::VImage result = image.copy();
    char **fields = vips_image_get_fields(result.get_image());
    for (char **field = fields; *field; ++field) {
        if (!kept.contains(*field))
            vips_image_remove(result.get_image(), *field);
    }
    g_strfreev(fields);
    if (!block.isEmpty())
        vips_image_set_blob_copy(result.get_image(), VIPS_META_EXIF_NAME, block.constData(),
                                 static_cast<size_t>(block.size()));
    return result;
}

QByteArray preservedExif(const vips::VImage &image, const Preserve &preserve, bool orientation)
{
    const QByteArray block = exifBlock(image);
    if (block.isEmpty() || !(preserve.any() || orientation))
        return {};
    const ExifPointer data = parse(block);
    return filter(data.get(), {preserve, orientation}).isEmpty() ? QByteArray()
                                                                 : serialise(data.get());
}

QByteArray exifBlock(const vips::VImage &image)
{
    const void *bytes = nullptr;
    size_t size = 0;
    if (vips_image_get_typeof(image.get_image(), VIPS_META_EXIF_NAME) == 0 ||
        vips_image_get_blob(image.get_image(), VIPS_META_EXIF_NAME, &bytes, &size) != 0)
        return {};
    QByteArray block(static_cast<const char *>(bytes), static_cast<qsizetype>(size));
    // PNG and AVIF files hold it without the identifier.
    if (!block.isEmpty() && !block.startsWith(exifIdentifier))
        block.prepend(exifIdentifier);
    return block;
}

QByteArrayView tiffOf(const QByteArray &exif)
{
    return QByteArrayView(exif).sliced(std::min(exifIdentifier.size(), exif.size()));
}

} // namespace pixpress
