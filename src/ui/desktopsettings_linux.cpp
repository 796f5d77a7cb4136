// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/desktopsettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString settingsInterface = u"org.freedesktop.portal.Settings"_s;

const QString appearanceGroup = u"org.freedesktop.appearance"_s;
const QString colourScheme = u"color-scheme"_s; // 0 no preference, 1 dark, 2 light
const QString gnomeGroup = u"org.gnome.desktop.interface"_s;
const QString animations = u"enable-animations"_s;

QVariant unwrapped(QVariant value)
{
    // Read() wraps its answer in a second variant.
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopSettings::DesktopSettings()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    // The slot's parameter is known by its name alone, and only from here on; a connection that is
    // made before delivers nothing.
    qRegisterMetaType<QDBusVariant>();
    bus.connect(service, path, settingsInterface, u"SettingChanged"_s, this,
                SLOT(onSettingChanged(QString, QString, QDBusVariant)));
    for (const auto &[group, name] :
         {std::pair{appearanceGroup, colourScheme}, std::pair{gnomeGroup, animations}}) {
        auto call = QDBusMessage::createMethodCall(service, path, settingsInterface, u"Read"_s);
        call.setArguments({group, name});
        auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, name] {
            watcher->deleteLater();
            if (const QDBusPendingReply<QDBusVariant> reply = *watcher; reply.isValid())
                take(group, name, reply.value().variant());
        });
    }
}

void DesktopSettings::onSettingChanged(const QString &group, const QString &name,
                                       const QDBusVariant &value)
{
    take(group, name, value.variant());
}

void DesktopSettings::take(const QString &group, const QString &name, const QVariant &value)
{
    const QVariant plain = unwrapped(value);
    if (group == appearanceGroup && name == colourScheme) {
        const uint scheme = plain.toUInt();
        m_prefersDark = scheme == 0 ? std::nullopt : std::optional(scheme == 1);
    } else if (group == gnomeGroup && name == animations) {
        m_reducedMotion = !plain.toBool();
    } else {
        return;
    }
    Q_EMIT changed();
}

} // namespace pixpress
