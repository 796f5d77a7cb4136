// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/descriptor.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pixpress {

namespace {

// Some systems refuse calls for more than 2 GB.
constexpr qint64 largestCall = 1 << 30;

constexpr mode_t leaveItToTheUmask = 0666;

/// Makes the call again as long as signals interrupt it.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

Descriptor::Result<> toResult(bool succeeded)
{
    if (succeeded)
        return {};
    return std::unexpected(errno);
}

} // namespace

Descriptor::Result<Descriptor> Descriptor::open(const QString &path, int flags)
{
    const QByteArray name = QFile::encodeName(path);
    if (name.contains('\0')) // The system would open what is named before it.
        return std::unexpected(EINVAL);
    const int descriptor = uninterrupted([&] {
        return ::open(name.constData(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK,
                      leaveItToTheUmask);
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

Descriptor::Result<qint64> Descriptor::size() const
{
    struct stat status = {};
    if (fstat(m_descriptor, &status) != 0)
        return std::unexpected(errno);
    if (!S_ISREG(status.st_mode))
        return std::unexpected(notAFile);
    return status.st_size;
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

Descriptor::Result<> Descriptor::writeAll(const QByteArray &bytes, qint64 &written)
{
    for (written = 0; written < bytes.size();) {
        const auto put = uninterrupted([&] {
            return pwrite(m_descriptor, bytes.constData() + written,
                          static_cast<size_t>(std::min(bytes.size() - written, largestCall)),
                          written);
        });
        if (put < 0)
            return std::unexpected(errno);
        if (put == 0)
            return std::unexpected(ENOSPC);
        written += put;
    }
    return {};
}

Descriptor::Result<> Descriptor::giveName(const QString &path)
{
    // linkat() takes a descriptor itself only from privileged processes.
    const QByteArray self = "/proc/self/fd/" + QByteArray::number(m_descriptor);
    const QByteArray name = QFile::encodeName(path);
    return toResult(
        linkat(AT_FDCWD, self.constData(), AT_FDCWD, name.constData(), AT_SYMLINK_FOLLOW) == 0);
}

Descriptor::Result<> Descriptor::reserve(qint64 size)
{
    if (size == 0)
        return {};
    // What a limit of the process forbids is only met in the midst of writing.
    rlimit limit{};
    if (getrlimit(RLIMIT_FSIZE, &limit) == 0 && static_cast<rlim_t>(size) > limit.rlim_cur)
        return std::unexpected(EFBIG);
#ifdef FALLOC_FL_KEEP_SIZE
    // The size stays: if the process ends now, the file is as it was.
    const int reserved =
        uninterrupted([&] { return fallocate(m_descriptor, FALLOC_FL_KEEP_SIZE, 0, size); });
    if (reserved == 0 || errno != EOPNOTSUPP)
        return toResult(reserved == 0);
#endif
#if defined(_POSIX_ADVISORY_INFO) && _POSIX_ADVISORY_INFO > 0
    int error = 0;
    do {
        error = posix_fallocate(m_descriptor, 0, size);
    } while (error == EINTR);
    if (error != 0)
        return std::unexpected(error);
    return {};
#else
    const auto present = this->size();
    return !present          ? std::unexpected(present.error())
           : size > *present ? resize(size)
                             : Result<>();
#endif
}

Descriptor::Result<> Descriptor::resize(qint64 size)
{
    return toResult(uninterrupted([&] { return ftruncate(m_descriptor, size); }) == 0);
}

Descriptor::Result<> Descriptor::sync()
{
    return toResult(uninterrupted([&] { return fsync(m_descriptor); }) == 0);
}

Descriptor::Result<> Descriptor::close()
{
    // Closed it is in any case, also when that was interrupted.
    const int result = ::close(std::exchange(m_descriptor, -1));
    return toResult(result == 0 || errno == EINTR);
}

} // namespace pixpress
