// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "scene.h"

#include <functional>

namespace pixpress::test {

/// Something in the scene never rests: it turns or blinks.
enum class Rest : bool { comes, never };

using Visit = std::function<void(const Scene &scene, const QString &name, Rest rest)>;

/// Drives windows of this size through their states and calls `visit` in each.
void visitScenes(QSize size, const Visit &visit);

/// What the failed row of the list says, in the service's own words.
inline const QString failure = QStringLiteral("The file is not a PNG, JPEG, WebP or AVIF image.");

} // namespace pixpress::test
