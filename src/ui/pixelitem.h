// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QQmlEngine>
#include <QQuickItem>

class QPainter;

namespace pixpress {

/// An item that is painted once into an image of whole screen pixels, which every scene graph shows
/// pixel for pixel. At fractional scale factors Rectangle, in the software renderer, and
/// QQuickPaintedItem round or stretch instead, which leaves notches and blurred edges.
/// Not smooth unless `smooth` is set, which an item that is shown enlarged needs. Derived classes
/// name it with its namespace, or qmllint of Qt 6.4 does not find it.
class PixelItem : public QQuickItem
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    explicit PixelItem(QQuickItem *parent = nullptr);

protected:
    /// Paints the item, antialiased, in logical pixels from the origin. `size` is the item's own,
    /// rounded to whole pixels of the screen, of which there are `ratio` in a logical one, and no
    /// larger than the window. Called while the GUI thread waits, again after update() and when the
    /// size changes.
    virtual void paint(QPainter &painter, QSizeF size, qreal ratio) = 0;

    QSGNode *updatePaintNode(QSGNode *previous, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &geometry, const QRectF &previous) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
};

} // namespace pixpress
