// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/module.h"

#include <QCoreApplication>
#include <QLibrary>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// Stays loaded to the end of the process: libvips cannot be started twice.
std::expected<const CodecFunctions *, CodecError> load()
{
    QLibrary module(QCoreApplication::applicationDirPath() + u"/" PIXPRESS_CODEC_MODULE ""_s);
    module.setLoadHints(QLibrary::PreventUnloadHint);
    const auto entry = reinterpret_cast<CodecEntry *>(module.resolve(codecEntry));
    if (!entry)
        return std::unexpected(
            CodecError{CodecFault::failed,
                       u"The part of Pixpress that compresses images cannot be loaded: "_s +
                           module.errorString()});
    return entry();
}

const std::expected<const CodecFunctions *, CodecError> &functions()
{
    static const auto loaded = load();
    return loaded;
}

} // namespace

std::expected<PictureInfo, CodecError> inspect(const QByteArray &original, qint64 maxPixels)
{
    const auto codec = functions();
    return codec ? (*codec)->inspect(original, maxPixels) : std::unexpected(codec.error());
}

std::expected<Encoded, CodecError> compress(const QByteArray &original,
                                            const RequestOptions &options, qint64 maxPixels,
                                            const std::atomic_bool &stopped)
{
    const auto codec = functions();
    return codec ? (*codec)->compress(original, options, maxPixels, stopped)
                 : std::unexpected(codec.error());
}

Thumbnail makeThumbnail(int descriptor, int longerSide, const std::atomic_bool &stopped)
{
    const auto codec = functions();
    return codec ? (*codec)->makeThumbnail(descriptor, longerSide, stopped) : Thumbnail();
}

} // namespace pixpress
