// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "localservice/listener.h"

#include <QByteArray>
#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <optional>

namespace pixpress {

/// The compression service of this machine, for a program that has a window to show first:
/// connections can be made at once, and it is loaded and begins to answer when the first has been.
/// Belongs to the thread that made it, which needs an event loop.
class BuiltInService
{
public:
    /// The key that a request must show; called on the service's threads, on several at a time.
    explicit BuiltInService(std::function<QByteArray()> key);

    /// Begins to listen; call it once. Fails when the system gives no port.
    std::expected<void, QString> start();

    /// "http://127.0.0.1:PORT", without a slash at its end. Valid once started.
    QUrl baseURL() const { return m_baseURL; }

private:
    void serve();

    std::function<QByteArray()> m_key;
    QUrl m_baseURL;
    std::optional<Listener> m_listener; ///< Until the service has it.
    std::unique_ptr<QSocketNotifier> m_knock;
    std::shared_ptr<void> m_service;
};

} // namespace pixpress
