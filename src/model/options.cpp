// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/options.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace pixpress {

bool CompressionOptions::requiresBackground() const
{
    return convertEnabled &&
           (convertFormat == ImageFormat::jpeg || convertFormat == ImageFormat::avif);
}

std::optional<QJsonObject> CompressionOptions::toJSON() const
{
    QJsonObject body;

    if (resizeEnabled && (resizeWidth || resizeHeight)) {
        // The service takes a single dimension with "scale" only; the panel's hint says so.
        const bool both = resizeWidth && resizeHeight;
        QJsonObject resize{{u"method"_s, encode(both ? resizeMode : ResizeMode::scale)}};
        if (resizeWidth)
            resize[u"width"_s] = *resizeWidth;
        if (resizeHeight)
            resize[u"height"_s] = *resizeHeight;
        body[u"resize"_s] = resize;
    }

    if (convertEnabled)
        body[u"convert"_s] = QJsonObject{{u"type"_s, QJsonArray{encode(convertFormat)}}};

    if (requiresBackground())
        body[u"transform"_s] = QJsonObject{{u"background"_s, backgroundColor}};

    QJsonArray preserve;
    if (preserveCopyright)
        preserve.append(u"copyright"_s);
    if (preserveCreation)
        preserve.append(u"creation"_s);
    if (preserveLocation)
        preserve.append(u"location"_s);
    if (!preserve.isEmpty())
        body[u"preserve"_s] = preserve;

    if (body.isEmpty())
        return std::nullopt;
    return body;
}

} // namespace pixpress
