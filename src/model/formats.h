// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/decoding.h"

#include <QHashFunctions>
#include <QJsonValue>
#include <QSet>
#include <QString>

#include <array>
#include <concepts>
#include <expected>
#include <optional>

/// The closed sets that the whole program shares. Each case is identified by its raw value, a
/// string: it is what goes over the wire, what lists key their rows by and what is hashed. The
/// user-facing texts are fixed and not translated.
namespace pixpress {

/// A format that the service accepts and can convert to. Raw value: its MIME type.
enum class ImageFormat : quint8 { png, jpeg, webp, avif };

/// A resize method of the service. Raw value: the method's name on the wire.
enum class ResizeMode : quint8 { scale, fit, cover, thumb };

/// Where a compressed file is written. Never sent to the service.
enum class OutputDestination : quint8 { alongside, overwrite, customFolder };

QString rawValue(ImageFormat format);
QString rawValue(ResizeMode mode);
QString rawValue(OutputDestination destination);

QString displayName(ImageFormat format);
QString displayName(ResizeMode mode);
QString description(ResizeMode mode);
QString title(OutputDestination destination);
QString description(OutputDestination destination);

template <typename E>
concept ClosedSet = std::same_as<E, ImageFormat> || std::same_as<E, ResizeMode> ||
                    std::same_as<E, OutputDestination>;

/// The sets that have a JSON form, which is their raw value as a string.
template <typename E>
concept SerialisableSet = ClosedSet<E> && !std::same_as<E, OutputDestination>;

/// All cases in the order in which every picker shows them, which is that of their declaration.
template <ClosedSet E>
constexpr auto allCases()
{
    if constexpr (std::same_as<E, OutputDestination>)
        return std::array{E::alongside, E::overwrite, E::customFolder};
    else
        return std::array{E{0}, E{1}, E{2}, E{3}};
}

/// The case with exactly this raw value (case-sensitive), or none.
template <ClosedSet E>
std::optional<E> fromRawValue(QStringView text)
{
    for (const E value : allCases<E>()) {
        if (rawValue(value) == text)
            return value;
    }
    return std::nullopt;
}

/// What lists key a row by: the raw value.
template <ClosedSet E>
QString id(E value)
{
    return rawValue(value);
}

template <SerialisableSet E>
QJsonValue encode(E value)
{
    return rawValue(value);
}

/// Case-sensitive, as fromRawValue().
template <SerialisableSet E>
std::expected<E, DecodingError> decode(const QJsonValue &json)
{
    if (const auto value = json.isString() ? fromRawValue<E>(json.toString()) : std::nullopt)
        return *value;
    return std::unexpected(DecodingError{
        json.isString() ? QStringLiteral("\"%1\" is not a known value.").arg(json.toString())
                        : QStringLiteral("A string was expected.")});
}

inline size_t qHash(ImageFormat value, size_t seed = 0)
{
    return ::qHash(rawValue(value), seed);
}
inline size_t qHash(ResizeMode value, size_t seed = 0)
{
    return ::qHash(rawValue(value), seed);
}
inline size_t qHash(OutputDestination value, size_t seed = 0)
{
    return ::qHash(rawValue(value), seed);
}

/// The extension, lower case and without a dot, that a file converted to `format` gets: the
/// commonest, where there are two.
QString fileExtension(ImageFormat format);

/// The lower-case extensions of the files that are accepted. Made once, safe from any thread.
const QSet<QString> &supportedExtensions();

/// What follows the last dot of a file name; empty when there is none, or when the only dot is the
/// one that hides a file (".png").
QString pathExtension(const QString &fileName);

/// Whether a file of this name is accepted: by its extension alone, whatever its letter case.
bool isSupported(const QString &fileName);

} // namespace pixpress
