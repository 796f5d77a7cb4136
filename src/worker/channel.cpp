// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/channel.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <new>
#include <vector>

#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

namespace pixpress {

namespace {

using Error = std::unexpected<int>;

constexpr size_t largestPacket = 16 * 1024;
constexpr int seals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

/// Room for the control message that carries a descriptor; alignment gives it room for two.
struct alignas(cmsghdr) Control
{
    std::array<char, CMSG_SPACE(sizeof(int))> bytes = {};
};

std::vector<FileDescriptor> receivedDescriptors(msghdr &message)
{
    std::vector<FileDescriptor> received;
    for (cmsghdr *header = CMSG_FIRSTHDR(&message); header;
         header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS)
            continue;
        const size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (size_t index = 0; index < count; ++index) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(header) + index * sizeof(int), sizeof(int));
            received.emplace_back(descriptor);
        }
    }
    return received;
}

} // namespace

std::expected<std::pair<FileDescriptor, FileDescriptor>, int> openChannel()
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return Error(errno);
    return std::pair(FileDescriptor(ends[0]), FileDescriptor(ends[1]));
}

std::expected<void, int> sendPacket(int socket, const QByteArray &bytes, int descriptor, int flags)
{
    iovec data{const_cast<char *>(bytes.constData()), static_cast<size_t>(bytes.size())};
    Control control;
    msghdr message{};
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    if (descriptor >= 0) {
        message.msg_control = control.bytes.data();
        message.msg_controllen = control.bytes.size();
        cmsghdr *header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(header), &descriptor, sizeof(int));
    }
    ssize_t sent = -1;
    do {
        sent = ::sendmsg(socket, &message, flags | MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent < 0 ? std::expected<void, int>(Error(errno)) : std::expected<void, int>();
}

std::expected<Packet, int> receivePacket(int socket, int flags)
{
    Packet packet{QByteArray(largestPacket, Qt::Uninitialized), FileDescriptor()};
    iovec data{packet.bytes.data(), largestPacket};
    Control control;
    msghdr message{};
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes.data();
    message.msg_controllen = control.bytes.size();
    ssize_t received = -1;
    do {
        received = ::recvmsg(socket, &message, flags | MSG_CMSG_CLOEXEC);
    } while (received < 0 && errno == EINTR);
    if (received < 0)
        return Error(errno);
    auto descriptors = receivedDescriptors(message);
    if (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC) || descriptors.size() > 1)
        return Error(EMSGSIZE);
    if (!descriptors.empty())
        packet.descriptor = std::move(descriptors.front());
    packet.bytes.truncate(received);
    return packet;
}

std::expected<FileDescriptor, int> sealedMemory(QByteArrayView bytes)
{
    FileDescriptor memory(::memfd_create("pixpress", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!memory.isOpen())
        return Error(errno);
    while (!bytes.isEmpty()) {
        const ssize_t written =
            ::write(memory.get(), bytes.data(), static_cast<size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return Error(written < 0 ? errno : ENOSPC);
        bytes = bytes.sliced(written);
    }
    if (::fcntl(memory.get(), F_ADD_SEALS, seals | F_SEAL_SEAL) != 0)
        return Error(errno);
    return memory;
}

std::expected<qint64, int> sealedSize(int descriptor)
{
    const int actual = ::fcntl(descriptor, F_GET_SEALS); // fails unless the file is in memory
    if (actual < 0 || (actual & seals) != seals)
        return Error(EINVAL);
    const off_t size = ::lseek(descriptor, 0, SEEK_END);
    return size < 0 ? std::expected<qint64, int>(Error(errno)) : size;
}

std::expected<QByteArray, int> readSealed(int descriptor, qint64 largest)
{
    const auto size = sealedSize(descriptor);
    if (!size)
        return Error(size.error());
    if (*size > largest)
        return Error(EFBIG);
    QByteArray bytes;
    try {
        bytes.resize(*size);
    } catch (const std::bad_alloc &) {
        return Error(ENOMEM);
    }
    qint64 done = 0;
    while (done < *size) {
        const ssize_t got =
            ::pread(descriptor, bytes.data() + done, static_cast<size_t>(*size - done), done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return Error(got < 0 ? errno : EIO);
        done += got;
    }
    return bytes;
}

} // namespace pixpress
