// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QUrl>

#include <expected>

namespace pixpress {

/// A socket that other programs of this machine, and nobody else, can connect to. Connections wait
/// in it until somebody accepts them.
class Listener
{
public:
    /// At a free port of 127.0.0.1, which no other process can share. Fails when the system has
    /// none.
    static std::expected<Listener, QString> open();

    Listener(Listener &&other) noexcept;
    Listener &operator=(Listener &&) = delete;
    ~Listener();

    /// "http://127.0.0.1:PORT", without a slash at its end.
    QUrl address() const;

    /// For waiting until a connection comes. The listener keeps it.
    int descriptor() const { return m_descriptor; }

    /// The socket, to be closed by the caller from now on.
    int release();

private:
    Listener(int descriptor, int port) : m_descriptor(descriptor), m_port(port) {}

    int m_descriptor;
    int m_port;
};

} // namespace pixpress
