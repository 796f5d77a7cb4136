// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/desktopproxy.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <chrono>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr std::chrono::milliseconds longestWait = 5s;

/// The first of the proxies that the portal proposes; empty for "direct://".
QByteArray firstProxy(const QStringList &proposed)
{
    const QString first = proposed.value(0);
    if (first.startsWith("direct:"_L1))
        return {};
    // GLib's name for any version of SOCKS, which libcurl takes for version 4.
    if (first.startsWith("socks:"_L1))
        return "socks5h:" + first.mid(6).toUtf8();
    return first.toUtf8();
}

} // namespace

void findDesktopProxy(const QUrl &url, QObject *context,
                      std::function<void(const QByteArray &proxy)> done)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        done({});
        return;
    }
    auto call = QDBusMessage::createMethodCall(
        u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
        u"org.freedesktop.portal.ProxyResolver"_s, u"Lookup"_s);
    call.setArguments({url.toString(QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery |
                                    QUrl::RemoveFragment)});
    auto *watcher = new QDBusPendingCallWatcher(
        bus.asyncCall(call, static_cast<int>(longestWait.count())), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [watcher, done = std::move(done)] {
                         const QDBusPendingReply<QStringList> reply = *watcher;
                         watcher->deleteLater();
                         done(reply.isError() ? QByteArray() : firstProxy(reply.value()));
                     });
}

} // namespace pixpress
