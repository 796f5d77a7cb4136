// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/switchface.h"

#include <QPainter>

namespace pixpress {

template <typename T>
void SwitchFace::set(T &member, const T &value, void (SwitchFace::*changed)())
{
    if (member == value)
        return;
    member = value;
    update();
    Q_EMIT(this->*changed)();
}

void SwitchFace::setTrackColor(const QColor &color)
{
    set(m_trackColor, color, &SwitchFace::trackColorChanged);
}

void SwitchFace::setKnobColor(const QColor &color)
{
    set(m_knobColor, color, &SwitchFace::knobChanged);
}

void SwitchFace::setKnobBorderColor(const QColor &color)
{
    set(m_knobBorderColor, color, &SwitchFace::knobChanged);
}

void SwitchFace::setPosition(qreal position)
{
    set(m_position, position, &SwitchFace::positionChanged);
}

void SwitchFace::paint(QPainter &painter, QSizeF size, qreal ratio)
{
    const qreal height = size.height();
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_trackColor);
    painter.drawRoundedRect(QRectF({}, size), height / 2, height / 2);

    const qreal gap = qRound(2 * ratio) / ratio;
    const qreal side = height - 2 * gap;
    const QRectF knob(gap + m_position * (size.width() - height), gap, side, side);
    painter.setBrush(m_knobColor);
    painter.drawEllipse(knob);
    const qreal half = 0.5 / ratio; // of a border of one pixel
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_knobBorderColor, 2 * half));
    painter.drawEllipse(knob.adjusted(half, half, -half, -half));
}

} // namespace pixpress
