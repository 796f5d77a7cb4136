// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/desktopproxy.h"

namespace pixpress {

void findDesktopProxy(const QUrl &, QObject *, std::function<void(const QByteArray &proxy)> done)
{
    done({});
}

} // namespace pixpress
