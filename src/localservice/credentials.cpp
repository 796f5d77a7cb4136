// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/credentials.h"

#include <QCryptographicHash>

namespace pixpress {

bool isAuthorised(const QByteArray &header, const QByteArray &key)
{
    constexpr QByteArrayView scheme("Basic ");
    if (key.isEmpty() || QByteArrayView(header)
                                 .first(std::min(header.size(), scheme.size()))
                                 .compare(scheme, Qt::CaseInsensitive) != 0)
        return false;
    const QByteArray shown = QByteArray::fromBase64(header.mid(scheme.size()).trimmed());
    // Of hashes every byte is compared, and where they begin to differ is not the caller's choice.
    const auto hash = [](const QByteArray &text) {
        return QCryptographicHash::hash(text, QCryptographicHash::Sha256);
    };
    const QByteArray a = hash(shown);
    const QByteArray b = hash("api:" + key);
    int difference = 0;
    for (qsizetype i = 0; i < a.size(); ++i)
        difference |= a.at(i) ^ b.at(i);
    return difference == 0;
}

} // namespace pixpress
