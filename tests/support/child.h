// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pixpress::test {

struct ChildResult
{
    QString answer; ///< What the work returned; empty when it did not come to its end.
    int signal = 0; ///< What killed the child, or 0.
};

/// Does work that may crash, hang or give up privileges in a copy of this process. A child that
/// hangs is killed by SIGALRM after 20 seconds. For tests of a single thread.
template <typename Work>
ChildResult inChild(Work work)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        return {QStringLiteral("no pipe"), 0};
    const pid_t child = fork();
    if (child == 0) {
        // Neither a core file nor the test framework's report on crashes.
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        for (const int number : {SIGABRT, SIGALRM, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
            std::signal(number, SIG_DFL);
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        alarm(20);
        const QByteArray answer = QString(work()).toUtf8();
        const auto size = static_cast<size_t>(answer.size());
        _exit(::write(ends[1], answer.constData(), size) == answer.size() ? 0 : 1);
    }
    close(ends[1]);
    QByteArray answer;
    std::array<char, 4096> buffer{};
    for (ssize_t got = 0; (got = ::read(ends[0], buffer.data(), buffer.size())) > 0;)
        answer.append(buffer.data(), got);
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return {QString::fromUtf8(answer), WIFSIGNALED(status) ? WTERMSIG(status) : 0};
}

/// Makes this process one that permissions bind: root becomes nobody, for good.
inline bool dropPrivileges()
{
    constexpr uid_t nobody = 65534;
    return geteuid() != 0 ||
           (setresgid(nobody, nobody, nobody) == 0 && setresuid(nobody, nobody, nobody) == 0);
}

} // namespace pixpress::test
