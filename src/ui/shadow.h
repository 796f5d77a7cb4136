// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace pixpress {

/// The soft shadow of a rounded rectangle, painted once rather than made by a shader, which not
/// every scene graph has. The item's bounds are the rectangle's with `blur` around them.
class Shadow : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color)
    Q_PROPERTY(qreal radius MEMBER m_radius) ///< Logical pixels, of the rectangle's corners.
    Q_PROPERTY(qreal blur MEMBER m_blur)     ///< Logical pixels over which it fades.

public:
    explicit Shadow(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

private:
    QColor m_color = Qt::black;
    qreal m_radius = 0;
    qreal m_blur = 0;
};

} // namespace pixpress
