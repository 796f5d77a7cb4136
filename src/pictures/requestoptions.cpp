// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pictures/requestoptions.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

using Fault = std::unexpected<QString>;
using Outcome = std::expected<void, QString>;

/// The first member of `object` that is none of `known`, as a fault.
Outcome onlyKnown(const QJsonObject &object, const QStringList &known, const QString &where)
{
    for (const QString &name : object.keys()) {
        if (!known.contains(name))
            return Fault(u"%1 has an unknown member \"%2\"."_s.arg(where, name));
    }
    return {};
}

std::expected<std::optional<qint64>, QString> parseSide(const QJsonObject &resize,
                                                        const QString &name)
{
    const QJsonValue value = resize.value(name);
    if (value.isUndefined())
        return std::nullopt;
    const double number = value.toDouble(std::nan(""));
    if (!value.isDouble() || number != std::floor(number))
        return Fault(u"\"resize.%1\" must be a whole number of pixels."_s.arg(name));
    if (number < 1 || number > static_cast<double>(maxSide))
        return Fault(u"\"resize.%1\" must be between 1 and %2 pixels."_s.arg(name).arg(maxSide));
    return static_cast<qint64>(number);
}

Outcome parseResize(const QJsonObject &resize, RequestOptions &options)
{
    const auto known = onlyKnown(resize, {u"method"_s, u"width"_s, u"height"_s}, u"\"resize\""_s);
    if (!known)
        return known;
    const auto method = fromRawValue<ResizeMode>(resize.value("method"_L1).toString());
    if (!method)
        return Fault(u"\"resize.method\" must be scale, fit, cover or thumb."_s);
    const auto width = parseSide(resize, u"width"_s);
    if (!width)
        return Fault(width.error());
    const auto height = parseSide(resize, u"height"_s);
    if (!height)
        return Fault(height.error());
    if (!*width && !*height)
        return Fault(u"\"resize\" needs a width or a height."_s);
    if (*method != ResizeMode::scale && !(*width && *height))
        return Fault(u"\"resize.method\" %1 needs a width and a height."_s.arg(rawValue(*method)));
    options.resize = ResizeRequest{*method, *width, *height};
    return {};
}

Outcome parseConvert(const QJsonObject &convert, RequestOptions &options)
{
    const auto known = onlyKnown(convert, {u"type"_s}, u"\"convert\""_s);
    if (!known)
        return known;
    const QJsonValue type = convert.value("type"_L1);
    const QJsonArray types = type.isString() ? QJsonArray{type} : type.toArray();
    if (types.isEmpty())
        return Fault(u"\"convert.type\" must be a list of one or more image types."_s);
    // Once each: a picture is encoded for every entry.
    const auto add = [&](ImageFormat format) {
        if (!options.convert.contains(format))
            options.convert.append(format);
    };
    for (const QJsonValue entry : types) {
        const auto format = fromRawValue<ImageFormat>(entry.toString());
        if (entry == "*/*"_L1)
            std::ranges::for_each(allCases<ImageFormat>(), add);
        else if (format)
            add(*format);
        else
            return Fault(u"\"convert.type\" must name image/png, image/jpeg, image/webp or "
                         "image/avif."_s);
    }
    return {};
}

std::optional<RequestOptions::Colour> parseColour(const QString &text)
{
    if (text == "white"_L1)
        return RequestOptions::Colour{255, 255, 255};
    if (text == "black"_L1)
        return RequestOptions::Colour{0, 0, 0};
    if (text.size() != 7 || text.front() != u'#')
        return std::nullopt;
    bool valid = text.at(1) != u'+' && text.at(1) != u'-';
    const uint colour = valid ? QStringView(text).mid(1).toUInt(&valid, 16) : 0;
    if (!valid)
        return std::nullopt;
    return RequestOptions::Colour{static_cast<quint8>(colour >> 16),
                                  static_cast<quint8>(colour >> 8), static_cast<quint8>(colour)};
}

Outcome parseTransform(const QJsonObject &transform, RequestOptions &options)
{
    const auto known = onlyKnown(transform, {u"background"_s}, u"\"transform\""_s);
    if (!known)
        return known;
    options.background = parseColour(transform.value("background"_L1).toString());
    if (!options.background)
        return Fault(u"\"transform.background\" must be \"#rrggbb\", \"white\" or \"black\"."_s);
    return {};
}

Outcome parsePreserve(const QJsonArray &preserve, RequestOptions &options)
{
    for (const QJsonValue entry : preserve) {
        if (entry == "copyright"_L1)
            options.preserve.copyright = true;
        else if (entry == "creation"_L1)
            options.preserve.creation = true;
        else if (entry == "location"_L1)
            options.preserve.location = true;
        else
            return Fault(u"\"preserve\" may name copyright, creation and location."_s);
    }
    return {};
}

} // namespace

std::expected<RequestOptions, QString> parseRequestOptions(const QByteArray &body)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(body, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return Fault(u"The body is not valid JSON: %1."_s.arg(parseError.errorString()));
    if (!document.isObject())
        return Fault(u"The body must be a JSON object."_s);

    const QJsonObject object = document.object();
    RequestOptions options;
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QString name = member.key();
        const QJsonValue value = member.value();
        const bool isPreserve = name == "preserve"_L1;
        Outcome outcome;
        if (isPreserve ? !value.isArray() : !value.isObject())
            outcome =
                Fault((isPreserve ? u"\"%1\" must be a list."_s : u"\"%1\" must be an object."_s)
                          .arg(name));
        else if (isPreserve)
            outcome = parsePreserve(value.toArray(), options);
        else if (name == "resize"_L1)
            outcome = parseResize(value.toObject(), options);
        else if (name == "convert"_L1)
            outcome = parseConvert(value.toObject(), options);
        else if (name == "transform"_L1)
            outcome = parseTransform(value.toObject(), options);
        else
            outcome = Fault(u"The body has an unknown member \"%1\"."_s.arg(name));
        if (!outcome)
            return Fault(outcome.error());
    }
    return options;
}

} // namespace pixpress
