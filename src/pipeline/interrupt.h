// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <functional>

class QObject;

namespace pixpress {

/// Calls `stop` on the thread of `context`, from its event loop, when the process is asked to end
/// (Ctrl-C, kill, a closed terminal), except by signals that it was started to ignore. What that
/// thread is writing at the moment is finished first. To be called once.
///
/// From then on a write beyond the process's limit on file sizes fails, and does not end it.
void onInterrupt(QObject *context, std::function<void()> stop);

} // namespace pixpress
