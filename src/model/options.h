// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/formats.h"

#include <QJsonObject>
#include <QUrl>

#include <optional>

namespace pixpress {

/// Everything that a person can set for a compression. The application state holds one that the
/// options panel edits; every task holds the copy that was current when it was added or retried.
struct CompressionOptions
{
    bool resizeEnabled = false;
    ResizeMode resizeMode = ResizeMode::fit; ///< Used when both dimensions are given.
    std::optional<qint64> resizeWidth = {};  ///< Pixels; carried as typed, not validated.
    std::optional<qint64> resizeHeight = {}; ///< Pixels; carried as typed, not validated.
    bool convertEnabled = false;
    ImageFormat convertFormat = ImageFormat::webp;
    bool preserveCopyright = false;
    bool preserveCreation = false;
    bool preserveLocation = false;
    OutputDestination outputDestination = OutputDestination::alongside;
    /// The folder of OutputDestination::customFolder; without one the source's own.
    std::optional<QUrl> customFolderURL = {};
    QString backgroundColor = QStringLiteral("#ffffff"); ///< "#rrggbb"; fills transparency.

    bool operator==(const CompressionOptions &) const = default;

    /// Whether a conversion to a format that cannot carry transparency is asked for.
    bool requiresBackground() const;

    /// The body of the request for the output, or none when these options ask for nothing beyond
    /// plain compression. The only place where that body is made.
    std::optional<QJsonObject> toJSON() const;
};

} // namespace pixpress
