// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace pixpress {

/// Asks the system to back a large buffer with large pages, before anything is put there. Pages of
/// the usual size take as long to be handed out and cleared, one by one, as the data takes to come.
void preferHugePages(QByteArray &buffer);

} // namespace pixpress
