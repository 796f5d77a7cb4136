// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "late/module.h"

#include <QString>

#include <expected>

namespace pixpress {

/// The module's functions, or a sentence why it cannot be loaded. The first call loads it, for tens
/// of milliseconds; it stays to the end of the process. From any thread.
const std::expected<const ModuleFunctions *, QString> &module();

} // namespace pixpress
