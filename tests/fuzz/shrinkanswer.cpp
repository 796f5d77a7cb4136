// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "service/wire.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace pixpress;

// The answer to an upload: what is read of it is what was written, and a refusal says why.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto read = ShrinkAPIResponse::decode(fuzz::bytesOf(data, size));
    if (!read) {
        HOLDS(!read.error().description.isEmpty());
        return 0;
    }
    HOLDS(std::isfinite(read->output.ratio));
    if (!read->input.type.isValidUtf16() || !read->output.type.isValidUtf16())
        return 0; // JSON could not write it.

    const QJsonObject object{
        {u"input"_s, QJsonObject{{u"size"_s, read->input.size}, {u"type"_s, read->input.type}}},
        {u"output"_s, QJsonObject{{u"size"_s, read->output.size},
                                  {u"type"_s, read->output.type},
                                  {u"width"_s, read->output.width},
                                  {u"height"_s, read->output.height},
                                  {u"ratio"_s, read->output.ratio}}}};
    const auto again = ShrinkAPIResponse::decode(QJsonDocument(object).toJson());
    HOLDS(again);
    HOLDS(again->input.size == read->input.size && again->input.type == read->input.type);
    HOLDS(again->output.size == read->output.size && again->output.type == read->output.type);
    HOLDS(again->output.width == read->output.width);
    HOLDS(again->output.height == read->output.height);
    HOLDS(again->output.ratio == read->output.ratio);
    return 0;
}
