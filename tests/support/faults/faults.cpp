// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The checking variants would define the calls that are defined here.
#undef _FORTIFY_SOURCE
#define _FORTIFY_SOURCE 0

#include "support/faults/faults.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

namespace pixpress::test::faults {

namespace {

// No destructors: the C library is used until the very end of the process.
using Path = std::array<char, 4096>;

Fault g_fault{};
Path g_folder{};
std::atomic<bool> g_armed = false;
std::atomic<int> g_calls = 0;
std::atomic<int> g_met = 0;

Path g_observedFolder{};
std::atomic<void (*)(Call, int)> g_observer = nullptr;

Path g_openingFolder{};
std::atomic<void (*)(const char *)> g_openingObserver = nullptr;

void setPath(Path &path, const char *text)
{
    std::snprintf(path.data(), path.size(), "%s", text);
}

bool isBelow(const char *path, const Path &folder)
{
    const size_t end = std::strlen(folder.data());
    return std::strncmp(path, folder.data(), end) == 0 &&
           (path[end] == '/' || (end > 0 && path[end - 1] == '/'));
}

bool isBelow(int descriptor, const Path &folder)
{
    std::array<char, 32> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    Path path{};
    const int before = errno;
    const ssize_t length = readlink(link.data(), path.data(), path.size() - 1);
    errno = before;
    return length > 0 && isBelow(path.data(), folder);
}

enum class Part { whole, half, none };

/// How much of its work a call is to do.
Part allowance(Call call, int descriptor)
{
    if (const auto observer = g_observer.load(); observer && isBelow(descriptor, g_observedFolder))
        observer(call, descriptor);
    if (!g_armed || call != g_fault.call || !isBelow(descriptor, g_folder))
        return Part::whole;

    const int past = ++g_calls - g_fault.nth;
    Part part = Part::whole;
    switch (g_fault.how) {
    case How::once: part = past == 0 ? Part::none : Part::whole; break;
    case How::always: part = past >= 0 ? Part::none : Part::whole; break;
    case How::halfway: part = past == 0 ? Part::half : past == 1 ? Part::none : Part::whole; break;
    case How::dying: part = past == 0 ? Part::half : past > 0 ? Part::none : Part::whole; break;
    case How::brief: part = past == 0 ? Part::half : Part::whole; break;
    }
    if (part != Part::whole)
        ++g_met;
    return part;
}

int fail()
{
    errno = g_fault.error;
    return -1;
}

/// The definition that this library's hides.
template <typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

size_t share(Part part, size_t size)
{
    return part == Part::half ? (size + 1) / 2 : size;
}

[[gnu::constructor]] void armByEnvironment()
{
    const char *text = std::getenv("PIXPRESS_FAULT");
    if (!text)
        return;
    std::array<char, 16> call{};
    std::array<char, 16> how{};
    Path folder{};
    Fault fault{};
    if (std::sscanf(text, "%15s %d %d %15s %4095[^\n]", call.data(), &fault.nth, &fault.error,
                    how.data(), folder.data()) != 5)
        std::abort();
    for (const Call known : allCalls) {
        if (std::strcmp(call.data(), name(known)) == 0)
            fault.call = known;
    }
    for (const How known : allWays) {
        if (std::strcmp(how.data(), name(known)) == 0)
            fault.how = known;
    }
    arm(fault, folder.data());
}

} // namespace

const char *name(Call call)
{
    switch (call) {
    case Call::read: return "read";
    case Call::write: return "write";
    case Call::ftruncate: return "ftruncate";
    case Call::fsync: return "fsync";
    case Call::posix_fallocate: return "posix_fallocate";
    case Call::close: return "close";
    }
    return "";
}

const char *name(How how)
{
    switch (how) {
    case How::once: return "once";
    case How::always: return "always";
    case How::halfway: return "halfway";
    case How::dying: return "dying";
    case How::brief: return "brief";
    }
    return "";
}

void arm(const Fault &fault, const char *folder)
{
    g_armed = false;
    g_fault = fault;
    setPath(g_folder, folder);
    g_calls = 0;
    g_met = 0;
    g_armed = true;
}

int disarm()
{
    g_armed = false;
    return g_met;
}

void observe(void (*observer)(Call, int), const char *folder)
{
    g_observer = nullptr;
    setPath(g_observedFolder, folder);
    g_observer = observer;
}

void observeOpening(void (*observer)(const char *), const char *folder)
{
    g_openingObserver = nullptr;
    setPath(g_openingFolder, folder);
    g_openingObserver = observer;
}

namespace {

int openFile(int (*real)(const char *, int, ...), const char *path, int flags, mode_t mode)
{
    if (const auto observer = g_openingObserver.load(); observer && isBelow(path, g_openingFolder))
        observer(path);
    return real(path, flags, mode);
}

/// What open() gets after its flags, if it gets anything.
mode_t modeOf(int flags, va_list more)
{
    return (flags & O_CREAT) || (flags & O_TMPFILE) == O_TMPFILE ? va_arg(more, mode_t) : 0;
}

template <typename Function, typename Buffer, typename... Offset>
ssize_t transfer(Call call, Function *real, int descriptor, Buffer *buffer, size_t size,
                 Offset... offset)
{
    const Part part = allowance(call, descriptor);
    return part == Part::none ? fail() : real(descriptor, buffer, share(part, size), offset...);
}

int truncate(int (*real)(int, off_t), int descriptor, off_t size)
{
    return allowance(Call::ftruncate, descriptor) == Part::none ? fail() : real(descriptor, size);
}

int synchronise(int (*real)(int), int descriptor)
{
    return allowance(Call::fsync, descriptor) == Part::none ? fail() : real(descriptor);
}

int allocate(int (*real)(int, off_t, off_t), int descriptor, off_t offset, off_t size)
{
    const Part part = allowance(Call::posix_fallocate, descriptor);
    if (part == Part::whole)
        return real(descriptor, offset, size);
    if (part == Part::half)
        real(descriptor, offset, (size + 1) / 2);
    return g_fault.error;
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
    return truncate(real, descriptor, size);
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    static const auto real = next<int(int, off_t)>("ftruncate64");
    return truncate(real, descriptor, size);
}

int fsync(int descriptor)
{
    static const auto real = next<int(int)>("fsync");
    return synchronise(real, descriptor);
}

int fdatasync(int descriptor)
{
    static const auto real = next<int(int)>("fdatasync");
    return synchronise(real, descriptor);
}

int posix_fallocate(int descriptor, off_t offset, off_t size)
{
    static const auto real = next<int(int, off_t, off_t)>("posix_fallocate");
    return allocate(real, descriptor, offset, size);
}

int posix_fallocate64(int descriptor, off64_t offset, off64_t size)
{
    static const auto real = next<int(int, off_t, off_t)>("posix_fallocate64");
    return allocate(real, descriptor, offset, size);
}

int close(int descriptor)
{
    static const auto real = next<int(int)>("close");
    const Part part = allowance(Call::close, descriptor);
    const int result = real(descriptor); // Linux closes also when it reports an error.
    return part == Part::none ? fail() : result;
}

} // extern "C"
