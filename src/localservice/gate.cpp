// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/gate.h"

namespace pixpress {

Gate::Pass::~Pass()
{
    if (!m_gate)
        return;
    {
        const std::lock_guard lock(m_gate->m_mutex);
        m_gate->m_amount -= m_amount;
        --m_gate->m_passes;
    }
    m_gate->m_changed.notify_all();
}

std::optional<Gate::Pass> Gate::enter(qint64 amount)
{
    std::unique_lock lock(m_mutex);
    const quint64 number = m_arrivals++;
    ++m_waiting;
    m_changed.wait(lock, [&] {
        const bool fits =
            m_passes == 0 || (m_passes < m_maxPasses && m_amount + amount <= m_maxAmount);
        return m_closed || (number == m_admitted && fits);
    });
    --m_waiting;
    if (m_closed)
        return std::nullopt;
    ++m_admitted;
    m_amount += amount;
    ++m_passes;
    if (m_waiting > 0)
        m_changed.notify_all(); // the next may fit too
    return std::optional<Pass>(std::in_place, *this, amount);
}

int Gate::waiting() const
{
    const std::lock_guard lock(m_mutex);
    return m_waiting;
}

void Gate::close()
{
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
    }
    m_changed.notify_all();
}

} // namespace pixpress
