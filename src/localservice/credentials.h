// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace pixpress {

/// Whether the value of an "Authorization" header shows `key`, as HTTP Basic credentials of the
/// user "api". How long that takes tells nothing about the key. An empty key lets nobody in.
bool isAuthorised(const QByteArray &header, const QByteArray &key);

} // namespace pixpress
