// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/requestoptions.h"

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

bool isPossible(const std::optional<qint64> &side)
{
    return !side || (*side >= 1 && *side <= maxSide);
}

std::optional<RequestOptions::Colour> toColour(const QString &text)
{
    bool isNumber = false;
    const uint colour = text.mid(1).toUInt(&isNumber, 16);
    if (!isNumber || text.size() != 7 || text.front() != u'#')
        return std::nullopt;
    return RequestOptions::Colour{static_cast<quint8>(colour >> 16),
                                  static_cast<quint8>(colour >> 8), static_cast<quint8>(colour)};
}

} // namespace

std::expected<RequestOptions, QString> toRequestOptions(const CompressionOptions &options)
{
    RequestOptions request;
    if (options.resizeEnabled && (options.resizeWidth || options.resizeHeight)) {
        if (!isPossible(options.resizeWidth) || !isPossible(options.resizeHeight))
            return std::unexpected(
                u"Width and height must be between 1 and %1 pixels."_s.arg(maxSide));
        const bool both = options.resizeWidth && options.resizeHeight;
        request.resize = ResizeRequest{both ? options.resizeMode : ResizeMode::scale,
                                       options.resizeWidth, options.resizeHeight};
    }
    if (options.convertEnabled)
        request.convert = {options.convertFormat};
    if (options.requiresBackground()) {
        request.background = toColour(options.backgroundColor);
        if (!request.background)
            return std::unexpected(
                u"\"%1\" is not a background colour."_s.arg(options.backgroundColor));
    }
    request.preserve = {options.preserveCopyright, options.preserveCreation,
                        options.preserveLocation};
    return request;
}

} // namespace pixpress
