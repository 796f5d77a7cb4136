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
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    paint(painter, whole, ratio);
    painter.end();

    auto *node = static_cast<QSGImageNode *>(previous);
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
    }
    node->setTexture(window()->createTextureFromImage(image));
    node->setRect(QRectF({}, whole));
    node->setSourceRect(QRectF({}, QSizeF(pixels)));
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
