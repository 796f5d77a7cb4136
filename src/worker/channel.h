// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "worker/filedescriptor.h"

#include <QByteArray>

#include <expected>
#include <utility>

/// How a program and its worker communicate: packets over a pair of SOCK_SEQPACKET sockets, each
/// with at most one file descriptor; larger data travels as sealed memory. Errors are values of
/// errno. Thread-safe.
namespace pixpress {

struct Packet
{
    QByteArray bytes; ///< Empty at the end of the connection.
    FileDescriptor descriptor;
};

/// Both ends of a new connection, closed on exec.
std::expected<std::pair<FileDescriptor, FileDescriptor>, int> openChannel();

/// Sends a packet whole or not at all, with a copy of `descriptor` unless that is -1. `flags` are
/// those of send(2).
std::expected<void, int> sendPacket(int socket, const QByteArray &bytes, int descriptor,
                                    int flags = 0);

/// Returns the next packet. Fails with EMSGSIZE for one that sendPacket() would not have sent.
std::expected<Packet, int> receivePacket(int socket, int flags = 0);

/// A file in memory with these bytes, which can no longer be changed by anyone.
std::expected<FileDescriptor, int> sealedMemory(QByteArrayView bytes);

/// The size in bytes of a file in memory that can no longer change. Fails with EINVAL for any other
/// file.
std::expected<qint64, int> sealedSize(int descriptor);

/// The content of such a file. Fails with EFBIG if it has more than `largest` bytes.
std::expected<QByteArray, int> readSealed(int descriptor, qint64 largest);

} // namespace pixpress
