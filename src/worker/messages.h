// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"
#include "model/thumbnail.h"
#include "worker/channel.h"

#include <QString>
#include <QStringList>

#include <expected>
#include <optional>
#include <variant>

/// The requests that a program sends to its worker and the answers that come back, as packets of
/// one CBOR map each. Each side checks everything that it receives.
namespace pixpress {

/// "Compress the image file in this sealed memory."
struct CompressRequest
{
    CompressionOptions options; ///< Destination and folder are not sent.
};

/// "Make a thumbnail of this open image file."
struct ThumbnailRequest
{
    int longerSide = 0; ///< Pixels.
};

struct Request
{
    quint64 id = 0; ///< Comes back with the answer.
    std::variant<CompressRequest, ThumbnailRequest> work;
    FileDescriptor picture;

    std::expected<void, int> send(int socket, int flags) const;
    /// None when the packet is no valid request.
    static std::optional<Request> parse(Packet packet);
};

/// A compressed image file. Types are those of the file handed over and of the result.
struct Compressed
{
    QByteArray bytes;
    ImageFormat inputFormat = ImageFormat::png;
    ImageFormat outputFormat = ImageFormat::png;
    qint64 width = 0; ///< Pixels, of the result.
    qint64 height = 0;
};

/// The pictures being compressed leave no memory for this one: ask again when one is done.
struct Busy
{
};

/// A sentence for the user.
struct Failed
{
    QString reason;
};

struct Answer
{
    quint64 id = 0;
    std::variant<Busy, Failed, Compressed, Thumbnail> result;

    /// Fails with an errno value, also when there is no memory for the bytes.
    std::expected<void, int> send(int socket) const;
    /// None when the packet is no valid answer, down to the sizes that it states. Reads the bytes.
    static std::optional<Answer> parse(const Packet &packet);
};

/// The worker's first packet: the layers of its sandbox that the kernel does not offer.
struct Greeting
{
    QStringList missingLayers;

    std::expected<void, int> send(int socket) const;
    static std::optional<Greeting> parse(const Packet &packet);
};

} // namespace pixpress
