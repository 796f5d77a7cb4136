// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/codec.h"
#include "worker/process/sandbox.h"
#include "worker/process/server.h"

#include <algorithm>
#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

using namespace pixpress;

namespace {

/// How many pixels, all frames together, this computer's memory is likely to bear.
qint64 maxPixels()
{
    // A picture that is being compressed needs its pixels, a converted or resized copy, and what
    // the most demanding encoder keeps besides.
    constexpr qint64 bytesPerPixel = 24;
    const qint64 memory = qint64{sysconf(_SC_PHYS_PAGES)} * sysconf(_SC_PAGESIZE);
    return std::clamp(memory / 2 / bytesPerPixel, qint64(1) << 24, qint64(1) << 28);
}

} // namespace

/// Started by the programs of Pixpress, with one end of a channel as its standard input.
int main()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    startCodec();
    const Greeting greeting{enterSandbox()};
    if (greeting.send(STDIN_FILENO))
        Server(STDIN_FILENO, maxPixels()).run();
    _exit(0); // threads may be at work, and nothing is left to be written
}
