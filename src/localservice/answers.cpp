// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/answers.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

void setJson(httplib::Response &response, const QJsonObject &object)
{
    response.set_content(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString(),
                         "application/json");
}

} // namespace

Refusal refusalFor(const CodecError &error)
{
    switch (error.fault) {
    case CodecFault::badRequest: return {400, "BadRequest", error.message};
    case CodecFault::unsupported: return {415, "UnsupportedMediaType", error.message};
    case CodecFault::tooLarge: return {413, "TooLarge", error.message};
    case CodecFault::stopped: return {503, "ServiceUnavailable", error.message};
    case CodecFault::failed: return {500, "InternalServerError", error.message};
    }
    Q_UNREACHABLE();
}

void answer(httplib::Response &response, const Refusal &refusal)
{
    response.status = refusal.status;
    setJson(response,
            {{u"error"_s, QString::fromLatin1(refusal.error)}, {u"message"_s, refusal.message}});
}

void answerPicture(httplib::Response &response, const Encoded &encoded)
{
    response.status = 200;
    response.set_header("Image-Width", std::to_string(encoded.size.width));
    response.set_header("Image-Height", std::to_string(encoded.size.height));
    response.set_content_provider(
        static_cast<size_t>(encoded.bytes.size()), rawValue(encoded.format).toStdString(),
        [bytes = encoded.bytes](size_t offset, size_t length, httplib::DataSink &sink) {
            return sink.write(bytes.constData() + offset, length);
        });
}

void answerDescription(httplib::Response &response, qint64 inputSize, const PictureInfo &input,
                       const Encoded &output, const QByteArray &url)
{
    const double ratio = static_cast<double>(output.bytes.size()) / static_cast<double>(inputSize);
    response.status = 201;
    response.set_header("Location", url.toStdString());
    setJson(response,
            {{u"input"_s, QJsonObject{{u"size"_s, inputSize}, {u"type"_s, rawValue(input.format)}}},
             {u"output"_s, QJsonObject{{u"size"_s, qint64(output.bytes.size())},
                                       {u"type"_s, rawValue(output.format)},
                                       {u"width"_s, output.size.width},
                                       {u"height"_s, output.size.height},
                                       {u"ratio"_s, std::round(ratio * 10'000) / 10'000},
                                       {u"url"_s, QString::fromLatin1(url)}}}});
}

} // namespace pixpress
