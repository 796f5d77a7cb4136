// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/wire.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <charconv>
#include <utility>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// Reads the members of one JSON object in turn and remembers the first that is missing or of the
/// wrong type; what is read after that is empty.
class Members
{
public:
    Members(QJsonObject object, QString path) : m_object(std::move(object)), m_path(std::move(path))
    {
    }

    QString string(const QString &name)
    {
        return read(name, u"a text"_s, &QJsonValue::isString).toString();
    }

    double number(const QString &name)
    {
        return read(name, u"a number"_s, &QJsonValue::isDouble).toDouble();
    }

    qint64 integer(const QString &name)
    {
        // toInteger() returns its argument for a number that is no integer of 64 bits.
        return read(
                   name, u"a whole number"_s,
                   [](const QJsonValue &value) { return value.toInteger(0) == value.toInteger(1); })
            .toInteger();
    }

    Members object(const QString &name)
    {
        return {read(name, u"an object"_s, &QJsonValue::isObject).toObject(), m_path + name + u'.'};
    }

    std::optional<DecodingError> error;

private:
    template <typename IsRight>
    QJsonValue read(const QString &name, const QString &expected, IsRight isRight)
    {
        const QJsonValue value = m_object.value(name);
        if (error)
            return {};
        if (value.isUndefined())
            error = DecodingError{u"The service's answer lacks \"%1\"."_s.arg(m_path + name)};
        else if (!std::invoke(isRight, value))
            error = DecodingError{
                u"In the service's answer, \"%1\" is not %2."_s.arg(m_path + name, expected)};
        return error ? QJsonValue() : value;
    }

    QJsonObject m_object;
    QString m_path;
};

std::optional<Members> parse(const QByteArray &body)
{
    const QJsonDocument document = QJsonDocument::fromJson(body);
    if (!document.isObject())
        return std::nullopt;
    return Members(document.object(), QString());
}

} // namespace

std::expected<ShrinkAPIResponse, DecodingError> ShrinkAPIResponse::decode(const QByteArray &body)
{
    auto root = parse(body);
    if (!root)
        return std::unexpected(DecodingError{u"The service's answer is not a JSON object."_s});

    ShrinkAPIResponse response;

    Members input = root->object(u"input"_s);
    if (root->error)
        return std::unexpected(*root->error);
    response.input.size = input.integer(u"size"_s);
    response.input.type = input.string(u"type"_s);
    if (input.error)
        return std::unexpected(*input.error);

    Members output = root->object(u"output"_s);
    if (root->error)
        return std::unexpected(*root->error);
    response.output.size = output.integer(u"size"_s);
    response.output.type = output.string(u"type"_s);
    response.output.width = output.integer(u"width"_s);
    response.output.height = output.integer(u"height"_s);
    response.output.ratio = output.number(u"ratio"_s);
    if (output.error)
        return std::unexpected(*output.error);

    return response;
}

std::optional<APIErrorResponse> APIErrorResponse::decode(const QByteArray &body)
{
    auto root = parse(body);
    if (!root)
        return std::nullopt;
    APIErrorResponse response;
    response.error = root->string(u"error"_s);
    response.message = root->string(u"message"_s);
    if (root->error)
        return std::nullopt;
    return response;
}

qint64 parseCompressionCount(const std::optional<QByteArray> &header)
{
    if (!header)
        return 0;
    const char *first = header->begin();
    const char *const last = header->end();
    // from_chars takes a minus but no plus.
    if (last - first > 1 && first[0] == '+' && first[1] != '-')
        ++first;
    qint64 count = 0;
    const auto [end, error] = std::from_chars(first, last, count);
    return error == std::errc() && end == last ? count : 0;
}

} // namespace pixpress
