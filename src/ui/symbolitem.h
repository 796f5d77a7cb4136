// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/pixelitem.h"

#include <QColor>

namespace pixpress {

/// A symbol of the program's own family, by its name, in one colour. Sharp at every scale factor.
class SymbolItem : public pixpress::PixelItem
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Symbol)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(qreal size READ size WRITE setSize NOTIFY sizeChanged)

public:
    explicit SymbolItem(QQuickItem *parent = nullptr);

    QString name() const { return m_name; }
    void setName(const QString &name);
    QColor color() const { return m_color; }
    void setColor(const QColor &color);
    /// Logical pixels, of the square it is drawn in.
    qreal size() const { return implicitWidth(); }
    void setSize(qreal size);

Q_SIGNALS:
    // Not emitted when an equal value is set.
    void nameChanged();
    void colorChanged();
    void sizeChanged();

protected:
    void paint(QPainter &painter, QSizeF size, qreal ratio) override;

private:
    QString m_name;
    QColor m_color = Qt::black;
};

} // namespace pixpress
