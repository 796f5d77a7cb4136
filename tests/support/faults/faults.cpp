// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/faults/fate.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace pixpress::test::faults {

namespace {

// No destructors: the C library is used until the very end of the process.
using Path = std::array<char, 4096>;

Fault g_fault{};
Path g_folder{};
std::atomic<bool> g_armed = false;
std::atomic<int> g_calls = 0;
std::atomic<int> g_met = 0;
Abilities g_abilities;

Path g_recordedFolder{};
std::atomic<bool> g_recording = false;
std::mutex g_stepsMutex;
std::vector<Step> *g_steps = nullptr; // never destroyed

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
           (path[end] == '/' || path[end] == '\0' || (end > 0 && path[end - 1] == '/'));
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

Fate nextFate()
{
    const int past = ++g_calls - g_fault.nth;
    switch (g_fault.how) {
    case How::once: return past == 0 ? Fate::none : Fate::whole;
    case How::always: return past >= 0 ? Fate::none : Fate::whole;
    case How::halfway: return past == 0 ? Fate::half : past == 1 ? Fate::none : Fate::whole;
    case How::dying: return past == 0 ? Fate::half : past > 0 ? Fate::none : Fate::whole;
    case How::brief: return past == 0 ? Fate::half : Fate::whole;
    case How::killed:
        if (past == 0)
            std::raise(SIGKILL);
        return Fate::whole;
    case How::torn: return past == 0 ? Fate::last : Fate::whole;
    }
    return Fate::whole;
}

Fate fate(Call call, bool isConcerned)
{
    if (!g_armed || call != g_fault.call || !isConcerned)
        return Fate::whole;
    const Fate fate = nextFate();
    if (fate != Fate::whole)
        ++g_met;
    return fate;
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
    const auto read = [&](How known) {
        if (std::strcmp(how.data(), name(known)) == 0)
            fault.how = known;
    };
    std::for_each(std::begin(allWays), std::end(allWays), read);
    std::for_each(std::begin(deadlyWays), std::end(deadlyWays), read);
    arm(fault, folder.data());
}

} // namespace

Fate fateOf(Call call, int descriptor)
{
    const auto observer = g_observer.load();
    if (observer && call != Call::stat && isBelow(descriptor, g_observedFolder))
        observer(call, descriptor);
    return fate(call, g_armed && isBelow(descriptor, g_folder));
}

Fate fateOf(Call call, const char *path)
{
    return fate(call, path && isBelow(path, g_folder));
}

void tellOfOpening(const char *path)
{
    thread_local bool isObserving = false; // The observer may make such calls itself.
    const auto observer = g_openingObserver.load();
    if (isObserving || !observer || !isBelow(path, g_openingFolder))
        return;
    isObserving = true;
    observer(path);
    isObserving = false;
}

Abilities abilities()
{
    return g_abilities;
}

void note(int descriptor, Step step)
{
    if (!g_recording || !isBelow(descriptor, g_recordedFolder))
        return;
    struct stat status{};
    // Not by the function, which is one that fails on demand.
    syscall(SYS_newfstatat, descriptor, "", &status, AT_EMPTY_PATH);
    step.inode = status.st_ino;
    const std::scoped_lock lock(g_stepsMutex);
    g_steps->push_back(std::move(step));
}

void note(const char *path, Step step)
{
    if (!g_recording || !isBelow(path, g_recordedFolder))
        return;
    struct stat status{};
    syscall(SYS_newfstatat, AT_FDCWD, path, &status, AT_SYMLINK_NOFOLLOW);
    step.inode = status.st_ino;
    step.path = path;
    const std::scoped_lock lock(g_stepsMutex);
    g_steps->push_back(std::move(step));
}

int fail()
{
    errno = g_fault.error;
    return -1;
}

int error()
{
    return g_fault.error;
}

void endIfLast(Fate fate)
{
    if (fate == Fate::last)
        std::raise(SIGKILL);
}

void limit(const Abilities &abilities)
{
    g_abilities = abilities;
}

void record(const char *folder)
{
    setPath(g_recordedFolder, folder);
    if (!g_steps)
        g_steps = new std::vector<Step>;
    g_steps->clear();
    g_recording = true;
}

std::vector<Step> recorded()
{
    g_recording = false;
    return std::exchange(*g_steps, {});
}

const char *name(Call call)
{
    switch (call) {
    case Call::stat: return "stat";
    case Call::open: return "open";
    case Call::lock: return "lock";
    case Call::read: return "read";
    case Call::write: return "write";
    case Call::clone: return "clone";
    case Call::ftruncate: return "ftruncate";
    case Call::fsync: return "fsync";
    case Call::link: return "link";
    case Call::rename: return "rename";
    case Call::unlink: return "unlink";
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
    case How::killed: return "killed";
    case How::torn: return "torn";
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

} // namespace pixpress::test::faults
