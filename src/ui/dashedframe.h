// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/pixelitem.h"

#include <QColor>

namespace pixpress {

/// The dashed outline of a rounded rectangle. The line lies inside the item's bounds.
class DashedFrame : public pixpress::PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(qreal radius MEMBER m_radius)       ///< Logical pixels, of the outer edge.
    Q_PROPERTY(qreal lineWidth MEMBER m_lineWidth) ///< Logical pixels.
    Q_PROPERTY(qreal dash MEMBER m_dash)           ///< Logical pixels of line ...
    Q_PROPERTY(qreal gap MEMBER m_gap)             ///< ... and of nothing after it.

public:
    using PixelItem::PixelItem;

    QColor color() const { return m_color; }
    void setColor(const QColor &color);

Q_SIGNALS:
    void colorChanged(); // Not emitted when an equal value is set.

protected:
    void paint(QPainter &painter, QSizeF size, qreal ratio) override;

private:
    QColor m_color = Qt::black;
    qreal m_radius = 0;
    qreal m_lineWidth = 1;
    qreal m_dash = 1;
    qreal m_gap = 1;
};

} // namespace pixpress
