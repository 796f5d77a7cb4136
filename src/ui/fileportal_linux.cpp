// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/fileportal.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QEvent>
#include <QEventLoop>
#include <QGuiApplication>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

const QString portalService = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;

struct Pattern
{
    uint kind = 0; ///< 0: of file names, 1: a MIME type.
    QString text;
};

struct PortalFilter
{
    QString name;
    QList<Pattern> patterns;
};

QDBusArgument &operator<<(QDBusArgument &argument, const Pattern &pattern)
{
    argument.beginStructure();
    argument << pattern.kind << pattern.text;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Pattern &pattern)
{
    argument.beginStructure();
    argument >> pattern.kind >> pattern.text;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const PortalFilter &filter)
{
    argument.beginStructure();
    argument << filter.name << filter.patterns;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalFilter &filter)
{
    argument.beginStructure();
    argument >> filter.name >> filter.patterns;
    argument.endStructure();
    return argument;
}

PortalFilter toPortal(const FileChoice::Filter &filter)
{
    PortalFilter result{.name = filter.name, .patterns = {}};
    for (const QString &type : filter.contentTypes)
        result.patterns.append({.kind = 1, .text = type});
    if (filter.contentTypes.isEmpty())
        result.patterns.append({.kind = 0, .text = u"*"_s});
    return result;
}

QVariantMap optionsFor(const FileChoice &choice, const QString &token)
{
    QVariantMap options{{u"handle_token"_s, token},
                        {u"modal"_s, true},
                        {u"multiple"_s, !choice.isFolder},
                        {u"directory"_s, choice.isFolder}};
    if (!choice.acceptLabel.isEmpty())
        options[u"accept_label"_s] = choice.acceptLabel;
    if (choice.currentFolder.isLocalFile()) {
        const QByteArray folder = choice.currentFolder.toLocalFile().toLocal8Bit();
        options[u"current_folder"_s] = folder + '\0'; // the portal wants it to end with a zero
    }
    QList<PortalFilter> filters;
    for (const FileChoice::Filter &filter : choice.filters)
        filters.append(toPortal(filter));
    if (!filters.isEmpty())
        options[u"filters"_s] = QVariant::fromValue(filters);
    return options;
}

/// How the portal knows a window, so that the chooser stays before it. On Wayland a name would have
/// to be exported, for which Qt has no function yet; the chooser then opens on its own.
QString nameOf(const QWindow &window)
{
    if (QGuiApplication::platformName() != u"xcb")
        return {};
    return u"x11:%1"_s.arg(window.winId(), 0, 16);
}

/// Keeps a window from the mouse and the keyboard, as a modal panel does. It can be closed.
class InputBlock : public QObject
{
public:
    explicit InputBlock(QWindow &window) { window.installEventFilter(this); }

    bool eventFilter(QObject * /*window*/, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd: return true;
        default: return false;
        }
    }
};

/// One request to the portal, until it is answered.
class PortalRequest : public QObject
{
    Q_OBJECT

public:
    PortalRequest(const FileChoice &choice, QWindow &window)
    {
        static int count = 0;
        const QString token = u"pixpress%1"_s.arg(++count);
        const QString sender = m_bus.baseService().mid(1).replace(u'.', u'_');
        m_handle = u"%1/request/%2/%3"_s.arg(portalPath, sender, token);
        // Before the call: the answer may come sooner than the call returns.
        m_bus.connect(portalService, m_handle, u"org.freedesktop.portal.Request"_s, u"Response"_s,
                      this, SLOT(onResponse(uint, QVariantMap)));
        connect(&m_portal, &QDBusServiceWatcher::serviceUnregistered, this, &PortalRequest::giveUp);

        auto call = QDBusMessage::createMethodCall(
            portalService, portalPath, u"org.freedesktop.portal.FileChooser"_s, u"OpenFile"_s);
        call.setArguments({nameOf(window), choice.title, optionsFor(choice, token)});
        auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            if (watcher->isError())
                giveUp();
        });
    }

    /// Ends too when the program does, as if cancelled.
    std::optional<QList<QUrl>> run()
    {
        m_loop.exec();
        return m_picked;
    }

private Q_SLOTS:
    void onResponse(uint response, const QVariantMap &results)
    {
        const QStringList uris = results.value(u"uris"_s).toStringList();
        for (const QString &uri : response == 0 ? uris : QStringList())
            m_picked->append(QUrl::fromEncoded(uri.toUtf8()));
        m_loop.quit();
    }

private:
    void giveUp()
    {
        // Or a chooser that opens late would stay open, with nobody to answer.
        m_bus.send(QDBusMessage::createMethodCall(portalService, m_handle,
                                                  u"org.freedesktop.portal.Request"_s, u"Close"_s));
        m_picked.reset();
        m_loop.quit();
    }

    QDBusConnection m_bus = QDBusConnection::sessionBus();
    QDBusServiceWatcher m_portal{portalService, m_bus, QDBusServiceWatcher::WatchForUnregistration};
    QString m_handle;
    QEventLoop m_loop;
    std::optional<QList<QUrl>> m_picked = QList<QUrl>();
};

} // namespace

std::optional<QList<QUrl>> chooseThroughPortal(const FileChoice &choice, QWindow &window)
{
    if (!QDBusConnection::sessionBus().isConnected())
        return std::nullopt;
    qDBusRegisterMetaType<Pattern>();
    qDBusRegisterMetaType<QList<Pattern>>();
    qDBusRegisterMetaType<PortalFilter>();
    qDBusRegisterMetaType<QList<PortalFilter>>();
    const InputBlock block(window);
    return PortalRequest(choice, window).run();
}

} // namespace pixpress

#include "fileportal_linux.moc"
