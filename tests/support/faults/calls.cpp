// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The checking variants would define the calls that are defined here.
#undef _FORTIFY_SOURCE
#define _FORTIFY_SOURCE 0

#include "support/faults/fate.h"

#include <cerrno>
#include <cstdarg>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace pixpress::test::faults {

namespace {

/// The definition that this library's hides.
template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

/// A call that is done wholly or not at all.
template <typename File, typename Work>
int call(Call call, File file, Work work)
{
    const Fate fate = fateOf(call, file);
    if (fate == Fate::none)
        return fail();
    const int result = work();
    endIfLast(fate);
    return result;
}

int refuse(int error)
{
    errno = error;
    return -1;
}

bool isUnnamed(int flags)
{
    return (flags & O_TMPFILE) == O_TMPFILE;
}

/// What open() gets after its flags, if it gets anything.
mode_t modeOf(int flags, va_list more)
{
    return (flags & O_CREAT) || isUnnamed(flags) ? va_arg(more, mode_t) : 0;
}

int openFile(int (*real)(const char *, int, ...), const char *path, int flags, mode_t mode)
{
    if (isUnnamed(flags) && !abilities().unnamedFiles)
        return refuse(EOPNOTSUPP);
    tellOfOpening(path);
    struct stat before{};
    const bool isNew = (flags & O_CREAT) != 0 &&
                       syscall(SYS_newfstatat, AT_FDCWD, path, &before, AT_SYMLINK_NOFOLLOW) != 0;
    const int result = call(Call::open, path, [&] { return real(path, flags, mode); });
    if (result != -1 && (isNew || isUnnamed(flags)))
        note(result, {.kind = Step::Kind::make});
    if (result != -1 && isNew)
        note(path, {.kind = Step::Kind::link});
    return result;
}

int sync(int (*real)(int), int descriptor)
{
    const int result = call(Call::fsync, descriptor, [&] { return real(descriptor); });
    if (result == 0)
        note(descriptor, {.kind = Step::Kind::sync});
    return result;
}

void noteWrite(int descriptor, const void *buffer, ssize_t size, off_t offset)
{
    if (size > 0)
        note(descriptor, {.kind = Step::Kind::write,
                          .offset = offset,
                          .data = {static_cast<const char *>(buffer), static_cast<size_t>(size)}});
}

template <typename Function, typename Buffer, typename... Offset>
ssize_t transfer(Call call, Function *real, int descriptor, Buffer *buffer, size_t size,
                 Offset... offset)
{
    const Fate fate = fateOf(call, descriptor);
    if (fate == Fate::none)
        return fail();
    const ssize_t done =
        real(descriptor, buffer, fate == Fate::whole ? size : (size + 1) / 2, offset...);
    endIfLast(fate);
    return done;
}

} // namespace

} // namespace pixpress::test::faults

using namespace pixpress::test::faults;

extern "C" {

int open(const char *path, int flags, ...)
{
    static const auto real = next<int(const char *, int, ...)>("open");
    va_list more;
    va_start(more, flags);
    const mode_t mode = modeOf(flags, more);
    va_end(more);
    return openFile(real, path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    static const auto real = next<int(const char *, int, ...)>("open64");
    va_list more;
    va_start(more, flags);
    const mode_t mode = modeOf(flags, more);
    va_end(more);
    return openFile(real, path, flags, mode);
}

int stat(const char *path, struct stat *result) noexcept
{
    static const auto real = next<int(const char *, struct stat *)>("stat");
    return call(Call::stat, path, [&] { return real(path, result); });
}

int statx(int folder, const char *path, int flags, unsigned mask, struct statx *result) noexcept
{
    static const auto real = next<int(int, const char *, int, unsigned, struct statx *)>("statx");
    return call(Call::stat, path, [&] { return real(folder, path, flags, mask, result); });
}

int fstat(int descriptor, struct stat *result) noexcept
{
    static const auto real = next<int(int, struct stat *)>("fstat");
    return call(Call::stat, descriptor, [&] { return real(descriptor, result); });
}

int fstat64(int descriptor, struct stat64 *result) noexcept
{
    static const auto real = next<int(int, struct stat64 *)>("fstat64");
    return call(Call::stat, descriptor, [&] { return real(descriptor, result); });
}

ssize_t read(int descriptor, void *buffer, size_t size)
{
    static const auto real = next<ssize_t(int, void *, size_t)>("read");
    return transfer(Call::read, real, descriptor, buffer, size);
}

ssize_t pread(int descriptor, void *buffer, size_t size, off_t offset)
{
    static const auto real = next<ssize_t(int, void *, size_t, off_t)>("pread");
    return transfer(Call::read, real, descriptor, buffer, size, offset);
}

ssize_t pread64(int descriptor, void *buffer, size_t size, off64_t offset)
{
    static const auto real = next<ssize_t(int, void *, size_t, off64_t)>("pread64");
    return transfer(Call::read, real, descriptor, buffer, size, offset);
}

ssize_t write(int descriptor, const void *buffer, size_t size)
{
    static const auto real = next<ssize_t(int, const void *, size_t)>("write");
    return transfer(Call::write, real, descriptor, buffer, size);
}

ssize_t pwrite(int descriptor, const void *buffer, size_t size, off_t offset)
{
    static const auto real = next<ssize_t(int, const void *, size_t, off_t)>("pwrite");
    const ssize_t written = transfer(Call::write, real, descriptor, buffer, size, offset);
    noteWrite(descriptor, buffer, written, offset);
    return written;
}

ssize_t pwrite64(int descriptor, const void *buffer, size_t size, off64_t offset)
{
    static const auto real = next<ssize_t(int, const void *, size_t, off64_t)>("pwrite64");
    const ssize_t written = transfer(Call::write, real, descriptor, buffer, size, offset);
    noteWrite(descriptor, buffer, written, offset);
    return written;
}

int ftruncate(int descriptor, off_t size) noexcept
{
    static const auto real = next<int(int, off_t)>("ftruncate");
    const int result = call(Call::ftruncate, descriptor, [&] { return real(descriptor, size); });
    if (result == 0)
        note(descriptor, {.kind = Step::Kind::resize, .offset = size});
    return result;
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    static const auto real = next<int(int, off_t)>("ftruncate64");
    return call(Call::ftruncate, descriptor, [&] { return real(descriptor, size); });
}

int fsync(int descriptor)
{
    static const auto real = next<int(int)>("fsync");
    return sync(real, descriptor);
}

int fdatasync(int descriptor)
{
    static const auto real = next<int(int)>("fdatasync");
    return sync(real, descriptor);
}

int linkat(int oldFolder, const char *oldPath, int newFolder, const char *newPath,
           int flags) noexcept
{
    static const auto real = next<int(int, const char *, int, const char *, int)>("linkat");
    tellOfOpening(newPath);
    const int result = call(Call::link, newPath,
                            [&] { return real(oldFolder, oldPath, newFolder, newPath, flags); });
    if (result == 0)
        note(newPath, {.kind = Step::Kind::link});
    return result;
}

int link(const char *oldPath, const char *newPath) noexcept
{
    static const auto real = next<int(const char *, const char *)>("link");
    if (!abilities().links)
        return refuse(EPERM);
    tellOfOpening(newPath);
    const int result = call(Call::link, newPath, [&] { return real(oldPath, newPath); });
    if (result == 0)
        note(newPath, {.kind = Step::Kind::link});
    return result;
}

int renameat2(int oldFolder, const char *oldPath, int newFolder, const char *newPath,
              unsigned flags) noexcept
{
    static const auto real = next<int(int, const char *, int, const char *, unsigned)>("renameat2");
    if (flags != 0 && !abilities().exclusiveRename)
        return refuse(EINVAL);
    tellOfOpening(newPath);
    const int result = call(Call::rename, newPath,
                            [&] { return real(oldFolder, oldPath, newFolder, newPath, flags); });
    if (result == 0)
        note(oldPath, {.kind = Step::Kind::rename, .target = newPath});
    return result;
}

int rename(const char *oldPath, const char *newPath) noexcept
{
    static const auto real = next<int(const char *, const char *)>("rename");
    tellOfOpening(newPath);
    const int result = call(Call::rename, newPath, [&] { return real(oldPath, newPath); });
    if (result == 0)
        note(oldPath, {.kind = Step::Kind::rename, .target = newPath});
    return result;
}

int unlink(const char *path) noexcept
{
    static const auto real = next<int(const char *)>("unlink");
    const int result = call(Call::unlink, path, [&] { return real(path); });
    if (result == 0)
        note(path, {.kind = Step::Kind::unlink});
    return result;
}

int flock(int descriptor, int operation) noexcept
{
    static const auto real = next<int(int, int)>("flock");
    return call(Call::lock, descriptor, [&] { return real(descriptor, operation); });
}

// Among the requests that take a descriptor, only copying is a call on files here.
int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    static const auto real = next<int(int, unsigned long, ...)>("ioctl");
    va_list more;
    va_start(more, request);
    void *argument = va_arg(more, void *);
    va_end(more);
    if (request != FICLONE)
        return real(descriptor, request, argument);
    if (!abilities().clones)
        return refuse(EOPNOTSUPP);
    return call(Call::clone, descriptor, [&] { return real(descriptor, request, argument); });
}

int close(int descriptor)
{
    static const auto real = next<int(int)>("close");
    const Fate fate = fateOf(Call::close, descriptor);
    const int result = real(descriptor); // Linux closes also when it reports an error.
    endIfLast(fate);
    return fate == Fate::none ? fail() : result;
}

} // extern "C"
