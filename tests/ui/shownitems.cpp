// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shownitems.h"

namespace pixpress::test {

namespace {

/// How much of the free room is before the content, at its left or above it.
double before(int alignment, double room)
{
    switch (alignment) {
    case Qt::AlignRight:
    case Qt::AlignBottom: return room;
    case Qt::AlignHCenter:
    case Qt::AlignVCenter: return room / 2;
    default: return 0;
    }
}

} // namespace

QList<QQuickItem *> shownTexts(const Scene &scene)
{
    QList<QQuickItem *> texts = scene.shown();
    texts.removeIf([](const QQuickItem *item) {
        return !item->inherits("QQuickText") || item->property("text").toString().isEmpty();
    });
    return texts;
}

QRectF paintedRect(const QQuickItem &text)
{
    const auto value = [&](const char *name) { return text.property(name).toDouble(); };
    const double width = value("contentWidth");
    const double height = value("contentHeight");
    const double left = value("leftPadding");
    const double top = value("topPadding");
    const double x = before(text.property("effectiveHorizontalAlignment").toInt(),
                            text.width() - left - value("rightPadding") - width);
    const double y = before(text.property("verticalAlignment").toInt(),
                            text.height() - top - value("bottomPadding") - height);
    return text.mapRectToScene({left + x, top + y, width, height});
}

QRectF visibleRect(const QQuickItem &text)
{
    QRectF visible = paintedRect(text);
    for (const QQuickItem *outer = &text; outer; outer = outer->parentItem()) {
        if (outer->clip())
            visible &= outer->mapRectToScene({0, 0, outer->width(), outer->height()});
    }
    return visible;
}

const QQuickItem *layerOf(const QQuickItem &item)
{
    const QQuickItem *layer = &item;
    while (layer->parentItem() && !layer->inherits("QQuickPopupItem"))
        layer = layer->parentItem();
    return layer;
}

} // namespace pixpress::test
