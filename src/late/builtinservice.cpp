// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "late/builtinservice.h"

#include "late/loading.h"

namespace pixpress {

BuiltInService::BuiltInService(std::function<QByteArray()> key) : m_key(std::move(key)) {}

std::expected<void, QString> BuiltInService::start()
{
    auto listener = Listener::open();
    if (!listener)
        return std::unexpected(listener.error());
    m_baseURL = listener->address();
    m_listener.emplace(std::move(*listener));
    m_knock = std::make_unique<QSocketNotifier>(m_listener->descriptor(), QSocketNotifier::Read);
    QObject::connect(m_knock.get(), &QSocketNotifier::activated, [this] { serve(); });
    return {};
}

/// The program's own requests come through the same module, which is loaded by now.
void BuiltInService::serve()
{
    m_knock->setEnabled(false);
    if (m_listener && module())
        m_service = (*module())->serve(std::move(m_key), std::move(*m_listener));
    m_listener.reset();
}

} // namespace pixpress
