// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/reveal.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

void openFolder(const QUrl &file)
{
    QDesktopServices::openUrl(file.adjusted(QUrl::RemoveFilename));
}

} // namespace

void revealFile(const QUrl &file)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return openFolder(file);
    auto call = QDBusMessage::createMethodCall(u"org.freedesktop.FileManager1"_s,
                                               u"/org/freedesktop/FileManager1"_s,
                                               u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    // The empty second argument is a start-up notification id, which we do not have.
    call.setArguments({QStringList{QString::fromLatin1(file.toEncoded())}, QString()});
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, qApp, [watcher, file] {
        watcher->deleteLater();
        if (watcher->isError())
            openFolder(file);
    });
}

} // namespace pixpress
