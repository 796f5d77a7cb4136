// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

namespace pixpress {

/// Takes away from this process, for good, all that decoding a picture does not need: opening and
/// creating files, sockets, other programs, other processes. What is open stays usable.
///
/// Landlock and seccomp refuse it independently of each other; limits bound memory and open files.
/// Call it while the process has one thread: Landlock holds for the calling thread and those that
/// it starts. Returns the layers that the kernel does not offer; the process then runs with the
/// others.
QStringList enterSandbox();

} // namespace pixpress
