// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/offlinesettings.h"

using namespace Qt::StringLiterals;

namespace pixpress {

OfflineSettings::OfflineSettings()
    : m_stored(u"Pixpress Offline"_s), m_key(KeychainHelper::randomAPIKey())
{
}

QVariant OfflineSettings::value(const QString &key) const
{
    return key == KeychainHelper::apiKeyEntry ? QVariant(m_key) : m_stored.value(key);
}

void OfflineSettings::setValue(const QString &key, const QVariant &value)
{
    if (key != KeychainHelper::apiKeyEntry)
        m_stored.setValue(key, value);
}

} // namespace pixpress
