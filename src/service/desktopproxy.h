// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QObject>
#include <QUrl>

#include <functional>

namespace pixpress {

/// Asks the desktop's settings for the proxy server to an address, such as "http://proxy:3128". The
/// result is empty if they name none or there is no desktop. `done` is called on this thread, at
/// once or later, and not after `context` has gone.
void findDesktopProxy(const QUrl &url, QObject *context,
                      std::function<void(const QByteArray &proxy)> done);

} // namespace pixpress
