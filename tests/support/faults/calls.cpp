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
#include <sys/stat.h>
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
    if (isUnnamed(flags) && areUnnamedFilesRefused()) {
        errno = EOPNOTSUPP;
        return -1;
    }
    tellOfOpening(path);
    return call(Call::open, path, [&] { return real(path, flags, mode); });
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

/// Returns what posix_fallocate() does.
template <typename Allocate>
int allocate(int descriptor, off_t size, Allocate allocate)
{
    const Fate fate = fateOf(Call::fallocate, descriptor);
    if (fate == Fate::whole)
        return allocate(size);
    if (fate != Fate::none)
        allocate((size + 1) / 2);
    endIfLast(fate);
    return error();
}

int allocateWith(int (*real)(int, int, off_t, off_t), int descriptor, int mode, off_t offset,
                 off_t size)
{
    const int result = allocate(descriptor, size, [&](off_t part) {
        return real(descriptor, mode, offset, part) == 0 ? 0 : errno;
    });
    if (result == 0)
        return 0;
    errno = result;
    return -1;
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
    return transfer(Call::write, real, descriptor, buffer, size, offset);
}

ssize_t pwrite64(int descriptor, const void *buffer, size_t size, off64_t offset)
{
    static const auto real = next<ssize_t(int, const void *, size_t, off64_t)>("pwrite64");
    return transfer(Call::write, real, descriptor, buffer, size, offset);
}

int ftruncate(int descriptor, off_t size) noexcept
{
    static const auto real = next<int(int, off_t)>("ftruncate");
    return call(Call::ftruncate, descriptor, [&] { return real(descriptor, size); });
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    static const auto real = next<int(int, off_t)>("ftruncate64");
    return call(Call::ftruncate, descriptor, [&] { return real(descriptor, size); });
}

int fsync(int descriptor)
{
    static const auto real = next<int(int)>("fsync");
    return call(Call::fsync, descriptor, [&] { return real(descriptor); });
}

int fdatasync(int descriptor)
{
    static const auto real = next<int(int)>("fdatasync");
    return call(Call::fsync, descriptor, [&] { return real(descriptor); });
}

int fallocate(int descriptor, int mode, off_t offset, off_t size)
{
    static const auto real = next<int(int, int, off_t, off_t)>("fallocate");
    return allocateWith(real, descriptor, mode, offset, size);
}

int fallocate64(int descriptor, int mode, off64_t offset, off64_t size)
{
    static const auto real = next<int(int, int, off_t, off_t)>("fallocate64");
    return allocateWith(real, descriptor, mode, offset, size);
}

int posix_fallocate(int descriptor, off_t offset, off_t size)
{
    static const auto real = next<int(int, off_t, off_t)>("posix_fallocate");
    return allocate(descriptor, size, [&](off_t part) { return real(descriptor, offset, part); });
}

int posix_fallocate64(int descriptor, off64_t offset, off64_t size)
{
    static const auto real = next<int(int, off_t, off_t)>("posix_fallocate64");
    return allocate(descriptor, size, [&](off_t part) { return real(descriptor, offset, part); });
}

int linkat(int oldFolder, const char *oldPath, int newFolder, const char *newPath,
           int flags) noexcept
{
    static const auto real = next<int(int, const char *, int, const char *, int)>("linkat");
    tellOfOpening(newPath);
    return call(Call::link, newPath,
                [&] { return real(oldFolder, oldPath, newFolder, newPath, flags); });
}

int unlink(const char *path) noexcept
{
    static const auto real = next<int(const char *)>("unlink");
    return call(Call::unlink, path, [&] { return real(path); });
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
