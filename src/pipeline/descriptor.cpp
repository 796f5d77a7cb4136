// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/descriptor.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <new>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

#ifdef Q_OS_LINUX
#include <linux/fs.h>
#include <sys/ioctl.h>
#endif

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

// Some systems refuse calls for more than 2 GB.
constexpr qint64 largestCall = 1 << 30;

/// Makes the call again as long as signals interrupt it.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// Makes the call again as long as another program is in its way.
template <typename Call>
auto patiently(std::chrono::milliseconds wait, Call call)
{
    const auto end = std::chrono::steady_clock::now() + wait;
    auto result = uninterrupted(call);
    while (result == -1 && errno == EWOULDBLOCK && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(10ms);
        result = uninterrupted(call);
    }
    return result;
}

Descriptor::Result<> toResult(bool succeeded)
{
    if (succeeded)
        return {};
    return std::unexpected(errno);
}

} // namespace

QString Descriptor::describe(int error)
{
    switch (error) {
    case notAFile:
    case EISDIR:
    case ENXIO: // of a socket
        return u"It is not a regular file"_s;
    case cutShort: return u"It became smaller while it was read"_s;
    case changed: return u"It has changed since it was read"_s;
    case EWOULDBLOCK: return u"Another program is using it"_s;
    default: return qt_error_string(error);
    }
}

Descriptor::Result<Descriptor> Descriptor::open(const QString &path, int flags, mode_t mode)
{
    const QByteArray name = QFile::encodeName(path);
    if (name.contains('\0')) // The system would open what is named before it.
        return std::unexpected(EINVAL);
    const int descriptor = patiently(patience, [&] {
        return ::open(name.constData(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, mode);
    });
    if (descriptor == -1)
        return std::unexpected(errno);
    return Descriptor(descriptor);
}

Descriptor::Result<Descriptor> Descriptor::openUnnamed([[maybe_unused]] const QString &folder)
{
#ifdef O_TMPFILE
    return open(folder, O_WRONLY | O_TMPFILE);
#else
    return std::unexpected(ENOTSUP);
#endif
}

Descriptor::~Descriptor()
{
    if (m_descriptor != -1)
        ::close(m_descriptor);
}

Descriptor::Result<struct stat> Descriptor::status() const
{
    struct stat status = {};
    if (fstat(m_descriptor, &status) != 0)
        return std::unexpected(errno);
    if (!S_ISREG(status.st_mode))
        return std::unexpected(notAFile);
    return status;
}

Descriptor::Result<qint64> Descriptor::size() const
{
    const auto status = this->status();
    if (!status)
        return std::unexpected(status.error());
    return status->st_size;
}

bool Descriptor::isAt(const QString &path) const
{
    struct stat there = {};
    const auto here = status();
    return here && ::stat(QFile::encodeName(path).constData(), &there) == 0 &&
           there.st_dev == here->st_dev && there.st_ino == here->st_ino;
}

Descriptor::Result<QByteArray> Descriptor::readAll()
{
    const auto expected = size();
    if (!expected)
        return std::unexpected(expected.error());

    QByteArray content;
    qint64 done = 0;
    try {
        // One byte more, so that the end of a file of that size is met without adding room.
        content = QByteArray(*expected + 1, Qt::Uninitialized);
        while (true) {
            const auto got = uninterrupted([&] {
                return pread(m_descriptor, content.data() + done,
                             static_cast<size_t>(std::min(content.size() - done, largestCall)),
                             done);
            });
            if (got < 0)
                return std::unexpected(errno);
            if (got == 0)
                break;
            done += got;
            if (done == content.size()) // it has grown since
                content.resize(content.size() * 2);
        }
    } catch (const std::bad_alloc &) {
        return std::unexpected(ENOMEM);
    }
    if (done < *expected)
        return std::unexpected(cutShort);
    content.resize(done);
    return content;
}

Descriptor::Result<> Descriptor::writeAll(const QByteArray &bytes, qint64 &written, qint64 offset)
{
    for (written = 0; written < bytes.size();) {
        const auto put = uninterrupted([&] {
            return pwrite(m_descriptor, bytes.constData() + written,
                          static_cast<size_t>(std::min(bytes.size() - written, largestCall)),
                          offset + written);
        });
        if (put < 0)
            return std::unexpected(errno);
        if (put == 0)
            return std::unexpected(ENOSPC);
        written += put;
    }
    return {};
}

Descriptor::Result<> Descriptor::cloneFrom([[maybe_unused]] const Descriptor &other)
{
#ifdef FICLONE
    return toResult(
        uninterrupted([&] { return ioctl(m_descriptor, FICLONE, other.m_descriptor); }) == 0);
#else
    return std::unexpected(ENOTSUP);
#endif
}

Descriptor::Result<> Descriptor::giveName(const QString &path)
{
    // linkat() takes a descriptor itself only from privileged processes.
    const QByteArray self = "/proc/self/fd/" + QByteArray::number(m_descriptor);
    const QByteArray name = QFile::encodeName(path);
    return toResult(
        linkat(AT_FDCWD, self.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) == 0);
}

Descriptor::Result<> Descriptor::resize(qint64 size)
{
    return toResult(uninterrupted([&] { return ftruncate(m_descriptor, size); }) == 0);
}

Descriptor::Result<> Descriptor::sync()
{
    return toResult(uninterrupted([&] { return fsync(m_descriptor); }) == 0);
}

Descriptor::Result<> Descriptor::syncFolder(const QString &folder,
                                            [[maybe_unused]] const Descriptor &inside)
{
    auto opened = open(folder, O_RDONLY | O_DIRECTORY);
#ifdef Q_OS_LINUX
    if (!opened && opened.error() == EACCES) // a folder that can be written to, but not listed
        return toResult(syncfs(inside.m_descriptor) == 0);
#endif
    if (!opened)
        return std::unexpected(opened.error());
    const auto synced = opened->sync();
    if (!synced && synced.error() == EINVAL) // Some network file systems do it on their own.
        return {};
    return synced;
}

Descriptor::Result<> Descriptor::lock(int operation, std::chrono::milliseconds wait)
{
    const bool locked =
        patiently(wait, [&] { return flock(m_descriptor, operation | LOCK_NB); }) == 0;
    if (!locked && errno == EWOULDBLOCK)
        return std::unexpected(EWOULDBLOCK);
    return {};
}

void Descriptor::holdOthersOff()
{
#ifdef F_SETLEASE
    // The signal by which the system says that somebody waits: one that is ignored by default.
    if (fcntl(m_descriptor, F_SETSIG, SIGURG) == 0)
        (void)fcntl(m_descriptor, F_SETLEASE, F_WRLCK);
#endif
}

} // namespace pixpress
