// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/queue.h"

#include <functional>

namespace bench {

/// Options that write the output next to its source, under the name that outputPath() tells.
pixpress::CompressionOptions alongside();
QString outputPath(const QUrl &source);

/// Sends the files through a queue that is made for it. Returns the seconds from their being added
/// until the last is completed. `completed`, if any, is called for each task within that time.
double runQueue(const QUrl &service, const QList<QUrl> &files,
                const std::function<void(const pixpress::CompressionTask &)> &completed = {});

} // namespace bench
