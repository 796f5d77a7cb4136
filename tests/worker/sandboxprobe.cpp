// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "worker/process/sandbox.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

const sockaddr *generic(const sockaddr_in &address)
{
    return reinterpret_cast<const sockaddr *>(&address);
}

int execute()
{
    char name[] = "/bin/true";
    char *arguments[] = {name, nullptr};
    return ::execve(name, arguments, nullptr);
}

void report(const char *name, const std::function<long()> &attempt)
{
    errno = 0;
    const long result = attempt();
    std::printf("%s: %s\n", name, result >= 0 ? "possible" : std::strerror(errno));
}

/// Tries what a worker must not be able to do, in the given folder, and prints a line for each.
void tryAll(const std::string &folder, int listening, pid_t parent)
{
    const std::string file = folder + "/file";
    const std::string other = folder + "/other";
    const auto port = loopback(9);
    report("open to read", [&] { return ::open(file.c_str(), O_RDONLY); });
    report("open to write", [&] { return ::open(file.c_str(), O_WRONLY); });
    report("open a system file", [] { return ::open("/etc/passwd", O_RDONLY); });
    report("open a folder", [] { return ::open("/", O_RDONLY | O_DIRECTORY); });
    report("create", [&] { return ::open(other.c_str(), O_WRONLY | O_CREAT, 0600); });
    report("create unnamed", [&] { return ::open(folder.c_str(), O_WRONLY | O_TMPFILE, 0600); });
    report("make a folder", [&] { return ::mkdir(other.c_str(), 0700); });
    report("rename", [&] { return ::rename(file.c_str(), other.c_str()); });
    report("remove", [&] { return ::unlink(file.c_str()); });
    report("link", [&] { return ::link(file.c_str(), other.c_str()); });
    report("truncate", [&] { return ::truncate(file.c_str(), 0); });
    report("change mode", [&] { return ::chmod(file.c_str(), 0777); });
    report("look at a path", [&] {
        struct stat status{};
        return ::stat(file.c_str(), &status);
    });
    report("make a socket", [] { return ::socket(AF_INET, SOCK_STREAM, 0); });
    report("make a local socket", [] { return ::socket(AF_UNIX, SOCK_STREAM, 0); });
    report("connect", [&] { return ::connect(listening, generic(port), sizeof port); });
    report("listen", [&] { return ::listen(listening, 1); });
    report("accept", [&] { return ::accept(listening, nullptr, nullptr); });
    report("execute", execute);
    report("fork",
           [] { return ::syscall(SYS_clone, SIGCHLD, nullptr, nullptr, nullptr, nullptr); });
    report("trace", [&] { return ::ptrace(PTRACE_ATTACH, parent, nullptr, nullptr); });
    report("signal another process", [&] { return ::kill(parent, 0); });
    report("signal another thread", [&] { return ::syscall(SYS_tgkill, parent, parent, 0); });
    report("read its memory", [&] {
        char byte = 0;
        const iovec ours{&byte, 1};
        return ::syscall(SYS_process_vm_readv, parent, &ours, 1, &ours, 1, 0);
    });
    report("leave the limits", [] {
        const rlimit limit{RLIM_INFINITY, RLIM_INFINITY};
        return ::setrlimit(RLIMIT_NOFILE, &limit);
    });
    report("use io_uring", [] { return ::syscall(SYS_io_uring_setup, 1, nullptr); });
}

} // namespace

/// Does what the worker does at its start; then, on its first thread and on another, what it must
/// not be able to do.
int main(int argc, char *argv[])
{
    if (argc != 2)
        return 2;
    const pid_t parent = ::getppid();
    const int listening = ::socket(AF_INET, SOCK_STREAM, 0);
    const auto any = loopback(0);
    ::bind(listening, generic(any), sizeof any);

    pixpress::startCodec();
    for (const QString &layer : pixpress::enterSandbox())
        std::printf("missing: %s\n", qPrintable(layer));
    rlimit files{};
    ::getrlimit(RLIMIT_NOFILE, &files);
    report("need nothing", [] { return 0; });
    tryAll(argv[1], listening, parent);
    std::thread([&] { tryAll(argv[1], listening, parent); }).join();
    std::fflush(stdout);
    ::_exit(0);
}
