// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/dashedframe.h"

#include <QPainter>

namespace pixpress {

void DashedFrame::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
    Q_EMIT colorChanged();
}

void DashedFrame::paint(QPainter &painter, QSizeF size, qreal)
{
    QPen pen(m_color, m_lineWidth, Qt::CustomDashLine, Qt::FlatCap, Qt::MiterJoin);
    pen.setDashPattern({m_dash / m_lineWidth, m_gap / m_lineWidth}); // in units of the pen
    pen.setMiterLimit(10);
    painter.setPen(pen);
    const qreal half = m_lineWidth / 2;
    painter.drawRoundedRect(QRectF({}, size).adjusted(half, half, -half, -half), m_radius - half,
                            m_radius - half);
}

} // namespace pixpress
