// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/strip.h"

#include "codec/metadata.h"
#include "codec/sniff.h"

#include <QByteArrayView>
#include <QtEndian>

#include <libheif/heif.h>

#include <memory>
#include <vector>

namespace pixpress {

namespace {

using Context = std::unique_ptr<heif_context, decltype(&heif_context_free)>;
using Handle = std::unique_ptr<const heif_image_handle, decltype(&heif_image_handle_release)>;

struct Metadata
{
    bool isExif = false;
    QByteArray content;
};

/// All metadata that is attached to the file's pictures; none when it cannot be read.
std::optional<std::vector<Metadata>> metadataOf(const QByteArray &file)
{
    const Context context(heif_context_alloc(), heif_context_free);
    if (heif_context_read_from_memory_without_copy(context.get(), file.constData(),
                                                   static_cast<size_t>(file.size()), nullptr)
            .code != heif_error_Ok)
        return std::nullopt;
    std::vector<heif_item_id> images(
        static_cast<size_t>(heif_context_get_number_of_top_level_images(context.get())));
    heif_context_get_list_of_top_level_image_IDs(context.get(), images.data(),
                                                 static_cast<int>(images.size()));
    std::vector<Metadata> result;
    for (const heif_item_id image : images) {
        heif_image_handle *opened = nullptr;
        if (heif_context_get_image_handle(context.get(), image, &opened).code != heif_error_Ok)
            return std::nullopt;
        const Handle handle(opened, heif_image_handle_release);
        std::vector<heif_item_id> blocks(static_cast<size_t>(
            heif_image_handle_get_number_of_metadata_blocks(handle.get(), nullptr)));
        heif_image_handle_get_list_of_metadata_block_IDs(handle.get(), nullptr, blocks.data(),
                                                         static_cast<int>(blocks.size()));
        for (const heif_item_id block : blocks) {
            const size_t size = heif_image_handle_get_metadata_size(handle.get(), block);
            QByteArray content(static_cast<qsizetype>(size), '\0');
            if (heif_image_handle_get_metadata(handle.get(), block, content.data()).code !=
                heif_error_Ok)
                return std::nullopt;
            const QByteArrayView type = heif_image_handle_get_metadata_type(handle.get(), block);
            result.push_back({type == "Exif", content});
        }
    }
    return result;
}

/// EXIF data without entries, or `exif`, as an item of the file holds it: after the distance to its
/// beginning.
QByteArray exifItem(const QByteArray &exif)
{
    const QByteArray none("MM\0\x2a\0\0\0\x08\0\0\0\0\0\0", 14);
    return QByteArray(4, '\0') + (exif.isEmpty() ? none : tiffOf(exif).toByteArray());
}

/// Blanks the outermost boxes that hold no part of the picture; false when they do not fit.
bool blankForeignBoxes(QByteArray &file)
{
    qsizetype at = 0;
    while (at + 8 <= file.size()) {
        qsizetype headSize = 8;
        auto size = static_cast<quint64>(qFromBigEndian<quint32>(file.constData() + at));
        if (size == 1 && at + 16 <= file.size()) {
            headSize = 16;
            size = qFromBigEndian<quint64>(file.constData() + at + 8);
        } else if (size == 0) { // Up to the end.
            size = static_cast<quint64>(file.size() - at);
        }
        if (size < static_cast<quint64>(headSize) || size > static_cast<quint64>(file.size() - at))
            return false;
        const QByteArrayView type = QByteArrayView(file).sliced(at + 4, 4);
        const auto end = at + static_cast<qsizetype>(size);
        if (type != "ftyp" && type != "meta" && type != "mdat") {
            file.replace(at + 4, 4, "free");
            file.replace(at + headSize, end - at - headSize, QByteArray(end - at - headSize, '\0'));
        }
        at = end;
    }
    return at == file.size();
}

} // namespace

std::optional<QByteArray> strippedAvif(const QByteArray &file, const QByteArray &exif)
{
    constexpr qsizetype surelyUnique = 12;
    const auto metadata = metadataOf(file);
    if (!metadata)
        return std::nullopt;
    QByteArray result = file;
    bool awaitsExif = !exif.isEmpty();
    for (const auto &[isExif, content] : *metadata) {
        QByteArray blank(content.size(), ' ');
        if (isExif) {
            const QByteArray item = exifItem(awaitsExif ? exif : QByteArray());
            if (item.size() > content.size())
                return std::nullopt;
            blank = item.leftJustified(content.size(), '\0');
            awaitsExif = false;
        }
        // The library does not tell the place.
        const qsizetype at = result.indexOf(content);
        if (at < 0 || content.size() < surelyUnique || result.indexOf(content, at + 1) >= 0)
            return std::nullopt;
        result.replace(at, content.size(), blank);
    }
    if (awaitsExif || !blankForeignBoxes(result))
        return std::nullopt;
    // What is said to be metadata may be a piece of the file's own head.
    const auto still = sniff(result);
    return still && still->format == ImageFormat::avif ? std::optional(result) : std::nullopt;
}

} // namespace pixpress
