// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/interrupt.h"

#include <QSocketNotifier>

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <csignal>

namespace pixpress {

namespace {

std::array<int, 2> ends; // a signal handler may do little more than write to a socket

void tellEventLoop(int)
{
    const char byte = 0;
    [[maybe_unused]] const auto written = write(ends[0], &byte, 1);
}

// Not SIG_IGN, which the programs that this one starts would inherit.
void ignore(int) {}

} // namespace

void onInterrupt(QObject *context, std::function<void()> stop)
{
    struct sigaction action = {};
    action.sa_flags = SA_RESTART;
    action.sa_handler = ignore;
    sigaction(SIGXFSZ, &action, nullptr);

    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0)
        return; // the signals then end the process as ever
    auto *notifier = new QSocketNotifier(ends[1], QSocketNotifier::Read, context);
    QObject::connect(notifier, &QSocketNotifier::activated, context, std::move(stop));

    action.sa_handler = tellEventLoop;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction inherited = {};
        sigaction(signal, nullptr, &inherited);
        if (inherited.sa_handler != SIG_IGN) // as under nohup, or in the background of a script
            sigaction(signal, &action, nullptr);
    }
}

} // namespace pixpress
