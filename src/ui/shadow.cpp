// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/shadow.h"

#include <QPainter>

#include <cmath>
#include <numbers>

namespace pixpress {

namespace {

/// How far a point is outside a rounded rectangle around the origin; negative inside.
qreal distanceOutside(QPointF point, QSizeF half, qreal radius)
{
    const qreal x = std::abs(point.x()) - half.width() + radius;
    const qreal y = std::abs(point.y()) - half.height() + radius;
    return std::hypot(std::max(x, 0.0), std::max(y, 0.0)) + std::min(std::max(x, y), 0.0) - radius;
}

} // namespace

Shadow::Shadow(QQuickItem *parent) : QQuickPaintedItem(parent) {}

void Shadow::paint(QPainter *painter)
{
    // Soft as it is, a pixel for each logical one is enough at every scale factor.
    QImage image(size().toSize(), QImage::Format_ARGB32_Premultiplied);
    const QPointF centre(width() / 2, height() / 2);
    const QSizeF half(width() / 2 - m_blur, height() / 2 - m_blur);
    const qreal deviation = m_blur / 2;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const qreal distance =
                distanceOutside(QPointF(x + 0.5, y + 0.5) - centre, half, m_radius);
            const qreal coverage = std::erfc(distance / deviation / std::numbers::sqrt2) / 2;
            QColor colour = m_color;
            colour.setAlphaF(static_cast<float>(m_color.alphaF() * coverage));
            line[x] = qPremultiply(colour.rgba());
        }
    }
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(boundingRect(), image);
}

} // namespace pixpress
