// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/tinifyservice.h"

namespace pixpress::cli {

/// All that the program does; returns its exit status. `remoteService` is where --remote leads.
int runApplication(int argc, char **argv, const ServiceConfig &remoteService = {});

} // namespace pixpress::cli
