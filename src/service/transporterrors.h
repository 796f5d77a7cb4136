// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/errors.h"

#include <curl/curl.h>

namespace pixpress {

/// The error that libcurl ended with, in a sentence.
TransportError describe(CURLcode code);

/// Those that the client finds by itself.
TransportError otherError(const QString &description);
TransportError outOfMemory();

} // namespace pixpress
