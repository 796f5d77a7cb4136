// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "codec/requestoptions.h"

#include <QByteArray>
#include <QString>

#include <atomic>
#include <expected>

namespace pixpress {

enum class CodecFault {
    badRequest,  ///< The options do not fit this picture.
    unsupported, ///< Not one of the formats, damaged, or it would lose frames.
    tooLarge,    ///< More pixels than the limit.
    stopped,     ///< The stop flag was raised meanwhile.
    failed,      ///< Nothing that the request could be blamed for.
};

struct CodecError
{
    CodecFault fault = CodecFault::failed;
    QString message; ///< A sentence for a person.
};

/// When the stop flag was raised.
inline CodecError serviceStopped()
{
    return {CodecFault::stopped, QStringLiteral("The service is being stopped.")};
}

/// What the header of a picture states.
struct PictureInfo
{
    ImageFormat format = ImageFormat::png;
    PixelSize frame;       ///< As stored, before the orientation is applied.
    qint64 frameCount = 1; ///< Above 1 only for an animated WebP.

    /// Of all frames.
    qint64 pixels() const { return frame.width * frame.height * frameCount; }
};

/// A picture as a file.
struct Encoded
{
    QByteArray bytes;
    ImageFormat format = ImageFormat::png;
    PixelSize size; ///< Of a frame.
};

/// Loads all libraries, plugins and figures that would otherwise be read from files on first use: a
/// process may give up its access to files afterwards. Starts no thread, so that the process can
/// restrict itself as a whole. The other functions start what they need by themselves.
void startCodec();

/// Reads the header only; refuses what the codec cannot treat without loss, and more than
/// `maxPixels` pixels over all frames. May be called from several threads.
std::expected<PictureInfo, CodecError> inspect(const QByteArray &original, qint64 maxPixels);

/// Makes the picture smaller. Blocks for as long as that takes, on as many cores as there are; may
/// be called from several threads. The pixels are turned upright and converted to sRGB, metadata is
/// dropped except what is to be preserved. When neither size, format nor transparency changes and
/// nothing smaller comes out, the original is the answer, freed of metadata in the same way; its
/// pixels are then as they were, with what tells how to turn them.
///
/// Preserved metadata is what the EXIF data holds; rights stated only in XMP, IPTC or PNG text are
/// not carried over.
///
/// `stopped` may be raised from another thread to end the work early, with CodecFault::stopped. All
/// stages look at it except the AV1 encoder and the last passes over a JPEG.
std::expected<Encoded, CodecError> compress(const QByteArray &original,
                                            const RequestOptions &options, qint64 maxPixels,
                                            const std::atomic_bool &stopped);

} // namespace pixpress
