// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/store.h"

#include <QRandomGenerator>

#include <array>

namespace pixpress {

namespace {

QByteArray newId()
{
    std::array<quint32, 4> words{};
    QRandomGenerator::system()->fillRange(words.data(), words.size());
    return QByteArray(reinterpret_cast<const char *>(words.data()), sizeof words).toHex();
}

} // namespace

std::optional<Store::Entry> Store::find(const QByteArray &id) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_entries.constFind(id);
    return found == m_entries.constEnd() ? std::nullopt : std::optional(*found);
}

QByteArray Store::add(const Entry &entry)
{
    QByteArray id = newId();
    const std::lock_guard lock(m_mutex);
    m_bytes += entry.bytes();
    m_entries.insert(id, entry);
    m_oldestFirst.push_back(id);
    while (m_bytes > m_maxBytes && m_oldestFirst.size() > 1) {
        m_bytes -= m_entries.take(m_oldestFirst.front()).bytes();
        m_oldestFirst.pop_front();
    }
    return id;
}

} // namespace pixpress
