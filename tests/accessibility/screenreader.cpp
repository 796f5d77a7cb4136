// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "screenreader.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QTest>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

const QString launcher = QStringLiteral(PIXPRESS_AT_SPI_LAUNCHER);
const QString accessibilityBus = u"org.a11y.Bus"_s;
const QString registry = u"org.a11y.atspi.Registry"_s;

QString freshName()
{
    return QUuid::createUuid().toString();
}

QDBusMessage call(const QDBusConnection &bus, const QString &service, const QString &path,
                  const QString &interface, const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return bus.call(message);
}

} // namespace

ScreenReader::ScreenReader()
{
    bindToThisProcess(m_launcher);
}

ScreenReader::~ScreenReader()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
    QDBusConnection::disconnectFromBus(m_session.name());
    m_launcher.terminate(); // it then ends the bus that it has started
    if (!m_launcher.waitForFinished()) {
        m_launcher.kill();
        m_launcher.waitForFinished();
    }
}

bool ScreenReader::start(const Desktop &desktop)
{
    QProcessEnvironment environment = desktop.environment();
    environment.insert(u"GSETTINGS_BACKEND"_s, u"memory"_s);
    m_launcher.setProcessEnvironment(environment);
    m_launcher.start(launcher, {u"--launch-immediately"_s});
    m_session = QDBusConnection::connectToBus(desktop.busAddress(), freshName());
    const bool isThere = QTest::qWaitFor(
        [this] { return m_session.interface()->isServiceRegistered(accessibilityBus).value(); },
        deadline);
    if (!isThere)
        return false;

    call(m_session, accessibilityBus, u"/org/a11y/bus"_s, u"org.freedesktop.DBus.Properties"_s,
         u"Set"_s, {u"org.a11y.Status"_s, u"IsEnabled"_s, QVariant::fromValue(QDBusVariant(true))});
    const QString address =
        call(m_session, accessibilityBus, u"/org/a11y/bus"_s, accessibilityBus, u"GetAddress"_s, {})
            .arguments()
            .value(0)
            .toString();
    m_bus = QDBusConnection::connectToBus(address, freshName());
    if (!m_bus.isConnected())
        return false;
    listen();
    return true;
}

void ScreenReader::listen()
{
    for (const char *member : {"StateChanged", "PropertyChange", "TextChanged", "Announcement"})
        m_bus.connect({}, {}, u"org.a11y.atspi.Event.Object"_s, QLatin1String(member), this,
                      SLOT(onEvent(QDBusMessage)));
    for (const auto &type : {u"object:state-changed"_s, u"object:property-change"_s,
                             u"object:text-changed"_s, u"object:announcement"_s, u"focus"_s})
        call(m_bus, registry, u"/org/a11y/atspi/registry"_s, registry, u"RegisterEvent"_s, {type});
}

void ScreenReader::hearOut()
{
    application(); // whose answer comes after all that it has told
    QCoreApplication::processEvents();
    heard.clear();
}

void ScreenReader::forget()
{
    heard.clear();
    texts.clear();
    m_focused = {};
}

void ScreenReader::onEvent(const QDBusMessage &message)
{
    const QVariantList arguments = message.arguments();
    const QString type = message.member() + u' ' + arguments.value(0).toString();
    const bool isOn = arguments.value(1).toInt() != 0;
    const Element source(m_bus, {message.service(), QDBusObjectPath(message.path())});
    texts.append(arguments.value(3).value<QDBusVariant>().variant().toString());
    if (type == u"StateChanged focused"_s && isOn)
        m_focused = source;
    else if (type == u"PropertyChange accessible-name"_s && source.role() == u"list item"_s)
        heard.append(source.name());
    else if (type == u"StateChanged showing"_s && isOn && source.role() == u"notification"_s)
        heard.append(source.name());
    else if (message.member() == u"Announcement"_s)
        heard.append(texts.last());
}

Element ScreenReader::application() const
{
    const Element desktop(m_bus, {registry, QDBusObjectPath(u"/org/a11y/atspi/accessible/root"_s)});
    QList<Element> applications;
    const bool isThere = QTest::qWaitFor(
        [&] {
            applications = desktop.children();
            return applications.size() == 1 && !applications.first().children().isEmpty();
        },
        deadline);
    return isThere ? applications.first() : Element();
}

QString ScreenReader::controls() const
{
    QStringList lines;
    for (const Node &node : tree()) {
        if (node.isShowing() && (node.isControl() || !node.has(State::enabled)))
            lines.append(described(node));
    }
    return lines.join(u'\n');
}

QStringList ScreenReader::rows() const
{
    QStringList names;
    for (const Node &node : tree()) {
        if (node.role == u"list item"_s && node.isShowing())
            names.append(node.name);
    }
    return names;
}

Node ScreenReader::node(const QString &role, const QString &name) const
{
    Node found;
    const bool isThere = QTest::qWaitFor(
        [&] {
            for (const Node &node : tree()) {
                if (node.role == role && node.name == name && node.isShowing())
                    found = node;
            }
            return !found.element.isNull();
        },
        deadline);
    if (!isThere)
        qWarning("There is no %s \"%s\", but:\n%s", qUtf8Printable(role), qUtf8Printable(name),
                 qUtf8Printable(controls()));
    return found;
}

QString ScreenReader::focus() const
{
    Element focused = m_focused;
    if (focused.isNull()) { // nothing has been told yet: what had it from the start
        for (const Node &node : tree()) {
            if (node.has(State::focused))
                focused = node.element;
        }
    }
    if (focused.isNull())
        return u"nowhere"_s;
    const QString text = u"%1 \"%2\""_s.arg(focused.role(), focused.name());
    const QList<State> states = focused.states();
    if (!states.contains(State::focused))
        return text + u", which says that it is not"_s;
    return states.contains(State::showing) ? text : text + u", which does not show"_s;
}

} // namespace pixpress::test
