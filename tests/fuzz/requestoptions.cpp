// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "pictures/requestoptions.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

using namespace Qt::StringLiterals;
using namespace pixpress;

namespace {

bool isSide(const std::optional<qint64> &side)
{
    return !side || (*side >= 1 && *side <= maxSide);
}

void checkPlan(PixelSize source, const ResizeRequest &request)
{
    const auto [scaled, result] = planResize(source, request);
    HOLDS(result.width >= 1 && result.width <= maxSide);
    HOLDS(result.height >= 1 && result.height <= maxSide);
    HOLDS(scaled.width >= result.width && scaled.height >= result.height);
    if (request.method == ResizeMode::cover || request.method == ResizeMode::thumb)
        HOLDS(result == (PixelSize{*request.width, *request.height}));
    else
        HOLDS(result.width <= source.width && result.height <= source.height);
}

QByteArray written(const RequestOptions &options)
{
    QJsonObject object;
    if (options.resize) {
        QJsonObject resize{{u"method"_s, rawValue(options.resize->method)}};
        if (options.resize->width)
            resize.insert(u"width"_s, *options.resize->width);
        if (options.resize->height)
            resize.insert(u"height"_s, *options.resize->height);
        object.insert(u"resize"_s, resize);
    }
    QJsonArray types;
    for (const ImageFormat format : options.convert)
        types.append(rawValue(format));
    if (!types.isEmpty())
        object.insert(u"convert"_s, QJsonObject{{u"type"_s, types}});
    if (const auto &colour = options.background)
        object.insert(
            u"transform"_s,
            QJsonObject{{u"background"_s, QString::asprintf("#%02x%02x%02x", colour->at(0),
                                                            colour->at(1), colour->at(2))}});
    QJsonArray preserve;
    if (options.preserve.copyright)
        preserve.append(u"copyright"_s);
    if (options.preserve.creation)
        preserve.append(u"creation"_s);
    if (options.preserve.location)
        preserve.append(u"location"_s);
    object.insert(u"preserve"_s, preserve);
    return QJsonDocument(object).toJson();
}

} // namespace

// The options of a request: no more work is asked for than there are formats, sizes are such that
// formats can store, and the plan for them keeps to them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto read = parseRequestOptions(fuzz::bytesOf(data, size));
    if (!read) {
        HOLDS(!read.error().isEmpty());
        return 0;
    }
    HOLDS(QSet(read->convert.begin(), read->convert.end()).size() == read->convert.size());
    if (read->resize) {
        HOLDS(isSide(read->resize->width) && isSide(read->resize->height));
        for (const PixelSize source : {PixelSize{1, 1}, {maxSide, 1}, {1, maxSide}, {640, 479}})
            checkPlan(source, *read->resize);
    }
    HOLDS(parseRequestOptions(written(*read)) == read);
    return 0;
}
