// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/desktopsettings.h"

#include <QDBusArgument>
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
const QString contrast = u"contrast"_s;         // 0 no preference, 1 high
const QString gnomeGroup = u"org.gnome.desktop.interface"_s;
const QString animations = u"enable-animations"_s;
const QString textScalingFactor = u"text-scaling-factor"_s;
const QString gnomeAccessGroup = u"org.gnome.desktop.a11y.interface"_s;
const QString gnomeHighContrast = u"high-contrast"_s;

QVariant unwrapped(QVariant value)
{
    // Some portals wrap what they tell in a second variant.
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
    auto call = QDBusMessage::createMethodCall(service, path, settingsInterface, u"ReadAll"_s);
    call.setArguments({QStringList{appearanceGroup, gnomeGroup, gnomeAccessGroup}});
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        takeAll(*watcher);
        watcher->deleteLater();
    });
}

DesktopPreferences DesktopSettings::preferences() const
{
    DesktopPreferences preferences = m_preferences;
    preferences.highContrast |= m_gnomeHighContrast;
    return preferences;
}

void DesktopSettings::onSettingChanged(const QString &group, const QString &name,
                                       const QDBusVariant &value)
{
    if (take(group, name, value.variant()))
        Q_EMIT changed();
}

void DesktopSettings::takeAll(const QDBusPendingCallWatcher &answer)
{
    const QDBusMessage message = answer.reply();
    if (message.signature() != u"a{sa{sv}}")
        return; // there is no portal
    const auto groups =
        qdbus_cast<QMap<QString, QVariantMap>>(message.arguments().first().value<QDBusArgument>());
    bool isOurs = false;
    for (const auto &[group, settings] : groups.asKeyValueRange()) {
        for (const auto &[name, value] : settings.asKeyValueRange())
            isOurs |= take(group, name, value);
    }
    if (isOurs)
        Q_EMIT changed();
}

bool DesktopSettings::take(const QString &group, const QString &name, const QVariant &value)
{
    const QVariant plain = unwrapped(value);
    if (group == appearanceGroup && name == colourScheme) {
        const uint scheme = plain.toUInt();
        m_preferences.dark = scheme == 0 ? std::nullopt : std::optional(scheme == 1);
    } else if (group == appearanceGroup && name == contrast) {
        m_preferences.highContrast = plain.toUInt() == 1;
    } else if (group == gnomeGroup && name == animations) {
        m_preferences.reducedMotion = !plain.toBool();
    } else if (group == gnomeGroup && name == textScalingFactor) {
        m_preferences.textScale = plain.toDouble();
    } else if (group == gnomeAccessGroup && name == gnomeHighContrast) {
        m_gnomeHighContrast = plain.toBool();
    } else {
        return false;
    }
    return true;
}

} // namespace pixpress
