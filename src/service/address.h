// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/errors.h"

#include <QUrl>

namespace pixpress {

/// Whether the host is this machine, by its name or a loopback address.
bool isThisMachine(const QUrl &url);

/// Whether a request may go to this address: https, or plain http to this machine.
bool isAllowedAddress(const QUrl &url);

/// The error of a request to any other.
TransportError refusedAddress();

} // namespace pixpress
