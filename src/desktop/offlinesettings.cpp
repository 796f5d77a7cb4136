// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/offlinesettings.h"

#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

const QString keyEntry = u"pixpress_api_key"_s;

QString randomKey()
{
    QByteArray bytes(32, Qt::Uninitialized);
    QRandomGenerator::system()->generate(bytes.begin(), bytes.end());
    return QString::fromLatin1(bytes.toHex());
}

} // namespace

OfflineSettings::OfflineSettings() : m_stored(u"Pixpress Offline"_s), m_key(randomKey()) {}

QVariant OfflineSettings::value(const QString &key) const
{
    return key == keyEntry ? QVariant(m_key) : m_stored.value(key);
}

void OfflineSettings::setValue(const QString &key, const QVariant &value)
{
    if (key != keyEntry)
        m_stored.setValue(key, value);
}

} // namespace pixpress
