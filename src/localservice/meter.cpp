// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/meter.h"

namespace pixpress {

Meter::Reservation::~Reservation()
{
    if (!m_meter)
        return;
    const std::lock_guard lock(m_meter->m_mutex);
    --m_meter->m_underWay;
}

void Meter::Reservation::count()
{
    Meter *const meter = std::exchange(m_meter, nullptr);
    const std::lock_guard lock(meter->m_mutex);
    --meter->m_underWay;
    ++meter->m_count;
}

qint64 Meter::count() const
{
    const std::lock_guard lock(m_mutex);
    return m_count;
}

bool Meter::isUsedUp() const
{
    const std::lock_guard lock(m_mutex);
    return m_limit && m_count >= *m_limit;
}

std::optional<Meter::Reservation> Meter::reserve()
{
    const std::lock_guard lock(m_mutex);
    if (m_limit && m_count + m_underWay >= *m_limit)
        return std::nullopt;
    ++m_underWay;
    return std::optional<Reservation>(std::in_place, *this);
}

} // namespace pixpress
