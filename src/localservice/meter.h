// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtGlobal>

#include <mutex>
#include <optional>
#include <utility>

namespace pixpress {

/// Counts compressions, and lets no more begin than its limit has room for. May be used from any
/// thread.
class Meter
{
public:
    /// A compression that is under way; its place is free again unless it was counted.
    class Reservation
    {
    public:
        explicit Reservation(Meter &meter) : m_meter(&meter) {}
        Reservation(Reservation &&other) noexcept : m_meter(std::exchange(other.m_meter, nullptr))
        {
        }
        Reservation &operator=(Reservation &&) = delete;
        ~Reservation();

        void count();

    private:
        Meter *m_meter;
    };

    Meter(qint64 initialCount, std::optional<qint64> limit) : m_limit(limit), m_count(initialCount)
    {
    }

    /// Those that have been counted.
    qint64 count() const;

    /// Whether none can begin, however those under way end.
    bool isUsedUp() const;

    /// None when those that were counted and those under way are as many as the limit.
    std::optional<Reservation> reserve();

private:
    const std::optional<qint64> m_limit;
    mutable std::mutex m_mutex;
    qint64 m_count;
    qint64 m_underWay = 0;
};

} // namespace pixpress
