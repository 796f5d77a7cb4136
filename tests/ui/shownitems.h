// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "scene.h"

namespace pixpress::test {

/// The texts that show and are not empty.
QList<QQuickItem *> shownTexts(const Scene &scene);

/// Where the letters of a text are, in the window.
QRectF paintedRect(const QQuickItem &text);

/// What of it is not cut off by what it stands in, or scrolled away.
QRectF visibleRect(const QQuickItem &text);

/// What an item is a part of: the window's own content, or one of the things that pop up over it.
const QQuickItem *layerOf(const QQuickItem &item);

} // namespace pixpress::test
