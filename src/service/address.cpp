// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/address.h"

#include <QHostAddress>

using namespace Qt::StringLiterals;

namespace pixpress {

bool isThisMachine(const QUrl &url)
{
    return url.host() == "localhost"_L1 || QHostAddress(url.host()).isLoopback();
}

bool isAllowedAddress(const QUrl &url)
{
    if (!url.isValid() || url.host().isEmpty())
        return false;
    if (url.scheme() == "https"_L1)
        return true;
    return url.scheme() == "http"_L1 && isThisMachine(url);
}

TransportError refusedAddress()
{
    return {TransportError::Case::refusedAddress,
            u"The server named an address that is not secure, so nothing was sent there."_s};
}

} // namespace pixpress
