// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pictures/codec.h"

#include <QByteArray>
#include <QHash>

#include <list>
#include <mutex>
#include <optional>

namespace pixpress {

/// The uploads and their compressed copies, in memory. Bounded: the oldest make room, but the
/// newest always stays. May be used from any thread.
class Store
{
public:
    struct Entry
    {
        QByteArray original;
        Encoded compressed;

        qint64 bytes() const { return original.size() + compressed.bytes.size(); }
    };

    explicit Store(qint64 maxBytes) : m_maxBytes(maxBytes) {}

    /// The entry of this id; none when it never was or has made room since.
    std::optional<Entry> find(const QByteArray &id) const;

    /// Keeps the entry and returns its id, 128 random bits in hexadecimal.
    QByteArray add(const Entry &entry);

private:
    const qint64 m_maxBytes;
    mutable std::mutex m_mutex;
    QHash<QByteArray, Entry> m_entries;
    std::list<QByteArray> m_oldestFirst;
    qint64 m_bytes = 0;
};

} // namespace pixpress
