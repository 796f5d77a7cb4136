// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/pixelitem.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>

namespace pixpress {

PixelItem::PixelItem(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    setSmooth(false);
}

QSGNode *PixelItem::updatePaintNode(QSGNode *previous, UpdatePaintNodeData *)
{
    const qreal ratio = window()->effectiveDevicePixelRatio();
    // What is larger than the window does not show to its end: a bar of a thousandfold, for one.
    const QSize pixels = (size().boundedTo(window()->size()) * ratio).toSize();
    if (pixels.isEmpty()) {
        delete previous;
        return nullptr;
    }
    const QSizeF whole = QSizeF(pixels) / ratio;
    // At 150 % an item may lie half a pixel off the screen's. A graphics driver then decides row by
    // row which of two pixels it shows: a small shift makes that the same for all, and an empty
    // margin keeps it from leaving out the first or the last.
    const qreal pixel = 1 / ratio;
    const qreal shift = pixel / 16;
    const QSize withMargin = pixels + QSize(2, 2);
    QImage image(withMargin, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(pixel, pixel);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    paint(painter, whole, ratio);
    painter.end();

    auto *node = static_cast<QSGImageNode *>(previous);
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
    }
    node->setTexture(window()->createTextureFromImage(image));
    node->setRect(QRectF(QPointF(shift - pixel, shift - pixel), QSizeF(withMargin) / ratio));
    node->setSourceRect(QRectF({}, QSizeF(withMargin)));
    node->setFiltering(smooth() ? QSGTexture::Linear : QSGTexture::Nearest);
    return node;
}

void PixelItem::geometryChange(const QRectF &geometry, const QRectF &previous)
{
    QQuickItem::geometryChange(geometry, previous);
    if (geometry.size() != previous.size())
        update();
}

void PixelItem::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    QQuickItem::itemChange(change, data);
}

} // namespace pixpress
