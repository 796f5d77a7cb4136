// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/messages.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborValue>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr qint64 largestResult = 1 << 30; ///< Bytes.
constexpr int largestThumbnail = 1024;    ///< Pixels of a side.

std::optional<QCborMap> toMap(const Packet &packet)
{
    QCborParserError error;
    const QCborValue value = QCborValue::fromCbor(packet.bytes, &error);
    // What Qt returns of bytes with an error in them is not safe to look into.
    const bool isMap = error.error == QCborError::NoError && value.isMap();
    return isMap ? std::optional(value.toMap()) : std::nullopt;
}

std::optional<qint64> integer(const QCborMap &map, QLatin1StringView key, qint64 least,
                              qint64 greatest)
{
    const QCborValue value = map.value(key);
    if (!value.isInteger()) // toInteger() converts floating-point numbers, whatever they are
        return std::nullopt;
    const qint64 number = value.toInteger();
    return number >= least && number <= greatest ? std::optional(number) : std::nullopt;
}

std::optional<quint64> idOf(const QCborMap &map)
{
    const auto id = integer(map, "id"_L1, 1, std::numeric_limits<qint64>::max());
    return id ? std::optional(static_cast<quint64>(*id)) : std::nullopt;
}

QCborMap toMap(const CompressionOptions &options)
{
    QCborMap map{
        {u"convert"_s, options.convertEnabled},     {u"format"_s, rawValue(options.convertFormat)},
        {u"background"_s, options.backgroundColor}, {u"copyright"_s, options.preserveCopyright},
        {u"creation"_s, options.preserveCreation},  {u"location"_s, options.preserveLocation},
        {u"resize"_s, options.resizeEnabled},       {u"mode"_s, rawValue(options.resizeMode)}};
    if (options.resizeWidth)
        map[u"width"_s] = *options.resizeWidth;
    if (options.resizeHeight)
        map[u"height"_s] = *options.resizeHeight;
    return map;
}

std::optional<CompressionOptions> toOptions(const QCborMap &map)
{
    const auto format = fromRawValue<ImageFormat>(map.value("format"_L1).toString());
    const auto mode = fromRawValue<ResizeMode>(map.value("mode"_L1).toString());
    if (!format || !mode)
        return std::nullopt;
    CompressionOptions options{.resizeEnabled = map.value("resize"_L1).toBool(),
                               .resizeMode = *mode,
                               .convertEnabled = map.value("convert"_L1).toBool(),
                               .convertFormat = *format,
                               .preserveCopyright = map.value("copyright"_L1).toBool(),
                               .preserveCreation = map.value("creation"_L1).toBool(),
                               .preserveLocation = map.value("location"_L1).toBool(),
                               .backgroundColor = map.value("background"_L1).toString()};
    constexpr auto any = std::numeric_limits<qint64>();
    options.resizeWidth = integer(map, "width"_L1, any.min(), any.max());
    options.resizeHeight = integer(map, "height"_L1, any.min(), any.max());
    return options;
}

std::optional<Compressed> toCompressed(const QCborMap &map, const Packet &packet)
{
    const auto inputFormat = fromRawValue<ImageFormat>(map.value("inputType"_L1).toString());
    const auto outputFormat = fromRawValue<ImageFormat>(map.value("outputType"_L1).toString());
    const auto width = integer(map, "width"_L1, 1, std::numeric_limits<qint32>::max());
    const auto height = integer(map, "height"_L1, 1, std::numeric_limits<qint32>::max());
    if (!inputFormat || !outputFormat || !width || !height)
        return std::nullopt;
    auto bytes = readSealed(packet.descriptor.get(), largestResult);
    if (!bytes || bytes->isEmpty())
        return std::nullopt;
    return Compressed{*std::move(bytes), *inputFormat, *outputFormat, *width, *height};
}

std::optional<Thumbnail> toThumbnail(const QCborMap &map, const Packet &packet)
{
    const auto width = integer(map, "width"_L1, 1, largestThumbnail);
    const auto height = integer(map, "height"_L1, 1, largestThumbnail);
    if (!width || !height)
        return std::nullopt;
    auto rgba = readSealed(packet.descriptor.get(), 4 * *width * *height);
    if (!rgba || rgba->size() != 4 * *width * *height)
        return std::nullopt;
    return Thumbnail{static_cast<int>(*width), static_cast<int>(*height), *std::move(rgba)};
}

template <typename... Handlers>
struct Overloaded : Handlers...
{
    using Handlers::operator()...;
};

} // namespace

std::expected<void, int> Request::send(int socket, int flags) const
{
    QCborMap map =
        std::visit(Overloaded{[](const CompressRequest &request) {
                                  return QCborMap{{u"compress"_s, toMap(request.options)}};
                              },
                              [](const ThumbnailRequest &request) {
                                  return QCborMap{{u"thumbnail"_s, request.longerSide}};
                              }},
                   work);
    map[u"id"_s] = static_cast<qint64>(id);
    return sendPacket(socket, map.toCborValue().toCbor(), picture.get(), flags);
}

std::optional<Request> Request::parse(Packet packet)
{
    const auto map = toMap(packet);
    const auto id = map ? idOf(*map) : std::nullopt;
    if (!id || !packet.descriptor.isOpen())
        return std::nullopt;
    if (const auto side = integer(*map, "thumbnail"_L1, 1, largestThumbnail))
        return Request{*id, ThumbnailRequest{static_cast<int>(*side)},
                       std::move(packet.descriptor)};
    const auto options = toOptions(map->value("compress"_L1).toMap());
    if (!options)
        return std::nullopt;
    return Request{*id, CompressRequest{*options}, std::move(packet.descriptor)};
}

std::expected<void, int> Answer::send(int socket) const
{
    QByteArrayView bytes;
    QCborMap map = std::visit(
        Overloaded{[](const Busy &) { return QCborMap{{u"kind"_s, u"busy"_s}}; },
                   [](const Failed &failed) {
                       return QCborMap{{u"kind"_s, u"failed"_s}, {u"reason"_s, failed.reason}};
                   },
                   [&](const Compressed &compressed) {
                       bytes = compressed.bytes;
                       return QCborMap{{u"kind"_s, u"compressed"_s},
                                       {u"inputType"_s, rawValue(compressed.inputFormat)},
                                       {u"outputType"_s, rawValue(compressed.outputFormat)},
                                       {u"width"_s, compressed.width},
                                       {u"height"_s, compressed.height}};
                   },
                   [&](const Thumbnail &thumbnail) {
                       bytes = thumbnail.rgba;
                       return QCborMap{{u"kind"_s, u"thumbnail"_s},
                                       {u"width"_s, thumbnail.width},
                                       {u"height"_s, thumbnail.height}};
                   }},
        result);
    map[u"id"_s] = static_cast<qint64>(id);
    const QByteArray packet = map.toCborValue().toCbor();
    if (bytes.isEmpty())
        return sendPacket(socket, packet, -1);
    const auto memory = sealedMemory(bytes);
    if (!memory)
        return std::unexpected(memory.error());
    return sendPacket(socket, packet, memory->get());
}

std::optional<Answer> Answer::parse(const Packet &packet)
{
    const auto map = toMap(packet);
    const auto id = map ? idOf(*map) : std::nullopt;
    if (!id)
        return std::nullopt;
    const QString kind = map->value("kind"_L1).toString();
    const bool hasBytes = kind == "compressed"_L1 || kind == "thumbnail"_L1;
    if (hasBytes != packet.descriptor.isOpen())
        return std::nullopt;
    if (kind == "busy"_L1)
        return Answer{*id, Busy{}};
    if (const QString reason = map->value("reason"_L1).toString();
        kind == "failed"_L1 && !reason.isEmpty())
        return Answer{*id, Failed{reason}};
    if (kind == "compressed"_L1) {
        if (auto compressed = toCompressed(*map, packet))
            return Answer{*id, *std::move(compressed)};
    }
    if (kind == "thumbnail"_L1) {
        if (auto thumbnail = toThumbnail(*map, packet))
            return Answer{*id, *std::move(thumbnail)};
    }
    return std::nullopt;
}

std::expected<void, int> Greeting::send(int socket) const
{
    const QCborMap map{{u"missingLayers"_s, QCborArray::fromStringList(missingLayers)}};
    return sendPacket(socket, map.toCborValue().toCbor(), -1);
}

std::optional<Greeting> Greeting::parse(const Packet &packet)
{
    const auto map = toMap(packet);
    if (!map || !map->value("missingLayers"_L1).isArray() || packet.descriptor.isOpen())
        return std::nullopt;
    Greeting greeting;
    for (const QCborValue layer : map->value("missingLayers"_L1).toArray())
        greeting.missingLayers.append(layer.toString());
    return greeting;
}

} // namespace pixpress
