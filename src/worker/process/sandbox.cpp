// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/process/sandbox.h"

#include <array>
#include <cerrno>

#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

void limitResource(__rlimit_resource resource, rlim_t most)
{
    const rlimit limit{most, most};
    setrlimit(resource, &limit); // cannot fail: limits are only lowered
}

void limitResources()
{
    limitResource(RLIMIT_CORE, 0);
    limitResource(RLIMIT_NOFILE, 256);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which map terabytes
    // More than any picture needs that fits into the memory; stacks and heaps reserve more than
    // they use.
    const auto memory =
        static_cast<rlim_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
    limitResource(RLIMIT_AS, memory + (rlim_t(8) << 30));
#endif
}

/// The layout of struct landlock_ruleset_attr, which older headers do not have in full.
struct LandlockRuleset
{
    quint64 fileSystem; ///< Kinds of access that are refused; one bit each.
    quint64 network;
    quint64 scopes;
};

/// Refuses every kind of access that this kernel's Landlock knows.
bool applyLandlock()
{
    constexpr auto versionFlag = 1U;
    const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, versionFlag);
    if (version < 1)
        return false;
    // What each version of the interface added.
    const int fileSystemBits = version >= 5 ? 16 : version >= 3 ? 15 : version >= 2 ? 14 : 13;
    const LandlockRuleset ruleset{.fileSystem = (quint64(1) << fileSystemBits) - 1,
                                  .network = version >= 4 ? 3U : 0U,
                                  .scopes = version >= 6 ? 3U : 0U};
    const size_t size = version >= 6   ? sizeof ruleset
                        : version >= 4 ? offsetof(LandlockRuleset, scopes)
                                       : offsetof(LandlockRuleset, network);
    const long descriptor = syscall(SYS_landlock_create_ruleset, &ruleset, size, 0);
    if (descriptor < 0)
        return false;
    const bool applied = syscall(SYS_landlock_restrict_self, descriptor, 0) == 0;
    close(static_cast<int>(descriptor));
    return applied;
}

/// What decoders, encoders, the allocator, threads and the channel call. Arguments are restricted
/// below where the call could do more than that.
constexpr std::array allowedCalls = {
    // memory
    SCMP_SYS(brk), SCMP_SYS(mmap), SCMP_SYS(munmap), SCMP_SYS(mremap), SCMP_SYS(mprotect),
    SCMP_SYS(madvise), SCMP_SYS(membarrier),
    // files that are open, and files in memory
    SCMP_SYS(read), SCMP_SYS(pread64), SCMP_SYS(readv), SCMP_SYS(write), SCMP_SYS(pwrite64),
    SCMP_SYS(writev), SCMP_SYS(lseek), SCMP_SYS(close), SCMP_SYS(fstat), SCMP_SYS(memfd_create),
    SCMP_SYS(ftruncate), SCMP_SYS(sendmsg), SCMP_SYS(recvmsg),
    // threads
    SCMP_SYS(futex), SCMP_SYS(set_robust_list), SCMP_SYS(rseq), SCMP_SYS(sched_yield),
    SCMP_SYS(sched_getaffinity), SCMP_SYS(gettid), SCMP_SYS(getpid), SCMP_SYS(exit),
    SCMP_SYS(exit_group),
    // time, random numbers, signals
    SCMP_SYS(clock_gettime), SCMP_SYS(clock_nanosleep), SCMP_SYS(nanosleep), SCMP_SYS(gettimeofday),
    SCMP_SYS(time), SCMP_SYS(times), SCMP_SYS(getrusage), SCMP_SYS(getrandom), SCMP_SYS(sysinfo),
    SCMP_SYS(uname), SCMP_SYS(restart_syscall), SCMP_SYS(rt_sigaction), SCMP_SYS(rt_sigprocmask),
    SCMP_SYS(rt_sigreturn), SCMP_SYS(sigaltstack), SCMP_SYS(poll), SCMP_SYS(ppoll)};

bool applySeccomp()
{
    // An error instead of a signal: libraries try some things that they can do without.
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(EPERM));
    if (!filter)
        return false;
    const auto allow = [filter](int call, auto... conditions) {
        return seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, sizeof...(conditions),
                                conditions...) == 0;
    };
    bool isComplete = true;
    for (const int call : allowedCalls)
        isComplete = (call < 0 || allow(call)) && isComplete; // negative: not on this processor
    isComplete =
        isComplete &&
        // A new thread, but no new process. The C library falls back to clone() when clone3(),
        // whose arguments a filter cannot see, does not exist.
        allow(SCMP_SYS(clone), SCMP_A0(SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD)) &&
        seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0 &&
        // abort() ends the process with a signal to itself.
        allow(SCMP_SYS(tgkill), SCMP_A0(SCMP_CMP_EQ, static_cast<scmp_datum_t>(getpid()))) &&
        allow(SCMP_SYS(prctl), SCMP_A0(SCMP_CMP_EQ, PR_SET_NAME)) &&
        allow(SCMP_SYS(fcntl), SCMP_A1(SCMP_CMP_EQ, F_ADD_SEALS)) &&
        allow(SCMP_SYS(fcntl), SCMP_A1(SCMP_CMP_EQ, F_GET_SEALS)) &&
        allow(SCMP_SYS(fcntl), SCMP_A1(SCMP_CMP_EQ, F_GETFL)) &&
        seccomp_attr_set(filter, SCMP_FLTATR_CTL_TSYNC, 1) == 0 && seccomp_load(filter) == 0;
    seccomp_release(filter);
    return isComplete;
}

} // namespace

QStringList enterSandbox()
{
    QStringList missing;
    limitResources();
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        missing.append(u"no_new_privs"_s);
    if (!applyLandlock())
        missing.append(u"Landlock"_s);
    if (!applySeccomp())
        missing.append(u"seccomp"_s);
    return missing;
}

} // namespace pixpress
