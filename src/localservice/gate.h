// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace pixpress {

/// Lets work through while its sum of some unit (bytes, pixels) and its number stay within bounds;
/// the rest waits. One piece of work that exceeds the bound alone goes through when it is alone.
/// Whoever came first goes first, even if what came later would fit: else the large would wait for
/// as long as there is something small. May be used from any thread.
class Gate
{
public:
    /// Held while the work goes on.
    class Pass
    {
    public:
        Pass(Gate &gate, qint64 amount) : m_gate(&gate), m_amount(amount) {}
        Pass(Pass &&other) noexcept
            : m_gate(std::exchange(other.m_gate, nullptr)), m_amount(other.m_amount)
        {
        }
        Pass &operator=(Pass &&) = delete;
        ~Pass();

    private:
        Gate *m_gate;
        qint64 m_amount;
    };

    Gate(qint64 maxAmount, int maxPasses) : m_maxAmount(maxAmount), m_maxPasses(maxPasses) {}

    /// Waits for a pass; none once the gate is closed.
    std::optional<Pass> enter(qint64 amount);

    /// Ends every wait, also those to come.
    void close();

    /// How many wait at this moment.
    int waiting() const;

private:
    const qint64 m_maxAmount;
    const int m_maxPasses;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    qint64 m_amount = 0;
    int m_passes = 0;
    int m_waiting = 0;
    quint64 m_arrivals = 0; ///< Also the number that the next one to arrive gets.
    quint64 m_admitted = 0; ///< Also the number of the one whose turn it is.
    bool m_closed = false;
};

} // namespace pixpress
