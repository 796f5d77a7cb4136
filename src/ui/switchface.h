// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/pixelitem.h"

#include <QColor>

namespace pixpress {

/// A switch: its track, and on it the knob. One item, since two would be rounded to the screen's
/// pixels each by itself, and the knob would lie askew.
class SwitchFace : public pixpress::PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor trackColor READ trackColor WRITE setTrackColor NOTIFY trackColorChanged)
    Q_PROPERTY(QColor knobColor READ knobColor WRITE setKnobColor NOTIFY knobChanged)
    Q_PROPERTY(
        QColor knobBorderColor READ knobBorderColor WRITE setKnobBorderColor NOTIFY knobChanged)
    Q_PROPERTY(qreal position READ position WRITE setPosition NOTIFY positionChanged)

public:
    using PixelItem::PixelItem;

    QColor trackColor() const { return m_trackColor; }
    void setTrackColor(const QColor &color);
    QColor knobColor() const { return m_knobColor; }
    void setKnobColor(const QColor &color);
    QColor knobBorderColor() const { return m_knobBorderColor; }
    void setKnobBorderColor(const QColor &color);
    qreal position() const { return m_position; } ///< Of the knob: 0 at the left, 1 at the right.
    void setPosition(qreal position);

Q_SIGNALS:
    // Not emitted when an equal value is set.
    void trackColorChanged();
    void knobChanged();
    void positionChanged();

protected:
    void paint(QPainter &painter, QSizeF size, qreal ratio) override;

private:
    template <typename T>
    void set(T &member, const T &value, void (SwitchFace::*changed)());

    QColor m_trackColor;
    QColor m_knobColor;
    QColor m_knobBorderColor;
    qreal m_position = 0;
};

} // namespace pixpress
