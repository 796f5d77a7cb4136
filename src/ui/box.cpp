// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/box.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace pixpress {

template <typename T>
void Box::set(T &member, const T &value, void (Box::*changed)())
{
    if (member == value)
        return;
    member = value;
    update();
    Q_EMIT(this->*changed)();
}

void Box::setColor(const QColor &color)
{
    set(m_color, color, &Box::colorChanged);
}

void Box::setRadius(qreal radius)
{
    set(m_radius, radius, &Box::radiusChanged);
}

void Box::setBorderWidth(qreal width)
{
    set(m_borderWidth, width, &Box::borderChanged);
}

void Box::setBorderColor(const QColor &color)
{
    set(m_borderColor, color, &Box::borderChanged);
}

void Box::paint(QPainter &painter, QSizeF size, qreal ratio)
{
    const QRectF bounds({}, size);
    const qreal radius = std::min({m_radius, size.width() / 2, size.height() / 2});
    const auto addOutline = [&](QPainterPath &path, qreal inset) {
        const qreal rounding = std::max(radius - inset, 0.0);
        path.addRoundedRect(bounds.adjusted(inset, inset, -inset, -inset), rounding, rounding);
    };
    // A hairline stays one pixel wide at 150 %.
    const qreal border =
        m_borderWidth > 0 ? std::max(std::floor(m_borderWidth * ratio + 0.25), 1.0) / ratio : 0;
    QPainterPath inside;
    addOutline(inside, border / 2); // at its edge it would show through the border's
    painter.fillPath(inside, m_color);
    if (border == 0)
        return;
    QPainterPath ring; // filled between its two outlines
    addOutline(ring, 0);
    addOutline(ring, border);
    painter.fillPath(ring, m_borderColor);
}

} // namespace pixpress
