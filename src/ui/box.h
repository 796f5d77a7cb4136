// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/pixelitem.h"

#include <QColor>

namespace pixpress {

/// A rectangle with round corners and perhaps a border, inside its bounds.
class Box : public pixpress::PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(qreal borderWidth READ borderWidth WRITE setBorderWidth NOTIFY borderChanged)
    Q_PROPERTY(QColor borderColor READ borderColor WRITE setBorderColor NOTIFY borderChanged)

public:
    using PixelItem::PixelItem;

    QColor color() const { return m_color; }
    void setColor(const QColor &color);
    qreal radius() const { return m_radius; } ///< Logical pixels; half a side at most is drawn.
    void setRadius(qreal radius);
    /// Logical pixels, rounded to whole ones of the screen, of which one shows at least; 0 for no
    /// border.
    qreal borderWidth() const { return m_borderWidth; }
    void setBorderWidth(qreal width);
    QColor borderColor() const { return m_borderColor; }
    void setBorderColor(const QColor &color);

Q_SIGNALS:
    // Not emitted when an equal value is set.
    void colorChanged();
    void radiusChanged();
    void borderChanged();

protected:
    void paint(QPainter &painter, QSizeF size, qreal ratio) override;

private:
    template <typename T>
    void set(T &member, const T &value, void (Box::*changed)());

    QColor m_color = Qt::white;
    qreal m_radius = 0;
    qreal m_borderWidth = 0;
    QColor m_borderColor = Qt::black;
};

} // namespace pixpress
