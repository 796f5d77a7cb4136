// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "accessibletree.h"

#include <QDBusMessage>
#include <QDBusMetaType>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr auto action = "org.a11y.atspi.Action";
constexpr auto component = "org.a11y.atspi.Component";
constexpr auto textInterface = "org.a11y.atspi.Text";
constexpr auto valueInterface = "org.a11y.atspi.Value";

constexpr int maximumDepth = 40; // a tree that goes deeper goes in circles

void registerTypes()
{
    static const bool done = [] {
        qDBusRegisterMetaType<ElementAddress>();
        qDBusRegisterMetaType<QList<ElementAddress>>();
        return true;
    }();
    Q_UNUSED(done)
}

} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const ElementAddress &address)
{
    argument.beginStructure();
    argument << address.service << address.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ElementAddress &address)
{
    argument.beginStructure();
    argument >> address.service >> address.path;
    argument.endStructure();
    return argument;
}

Element::Element(const QDBusConnection &bus, const ElementAddress &address)
    : m_bus(bus), m_address(address)
{
    registerTypes();
}

bool Element::operator==(const Element &other) const
{
    return m_address.service == other.m_address.service && m_address.path == other.m_address.path;
}

QVariantList Element::ask(const char *interface, const char *method,
                          const QVariantList &arguments) const
{
    if (isNull())
        return {};
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_address.service, m_address.path.path(), QLatin1String(interface), QLatin1String(method));
    call.setArguments(arguments);
    const QDBusMessage answer = m_bus.call(call);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments() : QVariantList();
}

QVariant Element::property(const char *interface, const char *name) const
{
    const QVariantList answer = ask("org.freedesktop.DBus.Properties", "Get",
                                    {QLatin1String(interface), QLatin1String(name)});
    return answer.isEmpty() ? QVariant() : answer.first().value<QDBusVariant>().variant();
}

QString Element::role() const
{
    constexpr uint passwordText = 40; // which has no name in Qt 6.4
    return ask(accessible, "GetRole").value(0).toUInt() == passwordText
               ? u"password text"_s
               : ask(accessible, "GetRoleName").value(0).toString();
}

QString Element::name() const
{
    return property(accessible, "Name").toString();
}

QString Element::description() const
{
    return property(accessible, "Description").toString();
}

QList<State> Element::states() const
{
    QList<uint> words;
    const QVariant answer = ask(accessible, "GetState").value(0);
    if (answer.canConvert<QDBusArgument>())
        answer.value<QDBusArgument>() >> words;
    QList<State> states;
    for (uint number = 0; number < 32 * static_cast<uint>(words.size()); ++number) {
        if ((words[number / 32] >> (number % 32)) & 1U)
            states.append(static_cast<State>(number));
    }
    return states;
}

bool Element::has(State state) const
{
    return states().contains(state);
}

QRect Element::area() const
{
    constexpr uint onScreen = 0;
    const QVariant answer = ask(component, "GetExtents", {onScreen}).value(0);
    QRect area;
    if (answer.canConvert<QDBusArgument>())
        answer.value<QDBusArgument>() >> area;
    return area;
}

QStringList Element::actions() const
{
    QStringList names;
    const int count = property(action, "NActions").toInt();
    for (int index = 0; index < count; ++index)
        names.append(ask(action, "GetName", {index}).value(0).toString());
    return names;
}

bool Element::act(const QString &wanted) const
{
    const auto index = static_cast<int>(actions().indexOf(wanted));
    return index >= 0 && ask(action, "DoAction", {index}).value(0).toBool();
}

bool Element::takeFocus() const
{
    return ask(component, "GrabFocus").value(0).toBool();
}

bool Element::setText(const QString &text) const
{
    return ask("org.a11y.atspi.EditableText", "SetTextContents", {text}).value(0).toBool();
}

Element Element::parent() const
{
    const QVariant answer = property(accessible, "Parent");
    return answer.canConvert<QDBusArgument>()
               ? Element(m_bus, qdbus_cast<ElementAddress>(answer.value<QDBusArgument>()))
               : Element();
}

QList<Element> Element::children() const
{
    const QVariant answer = ask(accessible, "GetChildren").value(0);
    QList<Element> children;
    if (!answer.canConvert<QDBusArgument>())
        return children;
    for (const auto &address : qdbus_cast<QList<ElementAddress>>(answer.value<QDBusArgument>()))
        children.append(Element(m_bus, address));
    return children;
}

std::optional<QString> Element::text() const
{
    const QVariantList answer = ask(textInterface, "GetText", {0, -1});
    return answer.isEmpty() ? std::nullopt : std::optional(answer.first().toString());
}

QStringList Element::textPieces() const
{
    constexpr uint boundaries = 5; // characters, words, sentences, lines, paragraphs
    QStringList pieces;
    const int count = property(textInterface, "CharacterCount").toInt();
    for (int offset = 0; offset < count; ++offset) {
        const uint code = ask(textInterface, "GetCharacterAtOffset", {offset}).value(0).toUInt();
        pieces.append(QString(QChar(code & 0xffU))); // Qt 6.4 tells the first byte of UTF-8
    }
    for (uint boundary = 0; boundary < boundaries; ++boundary) {
        for (const char *method : {"GetTextAtOffset", "GetTextBeforeOffset", "GetTextAfterOffset"})
            pieces.append(ask(textInterface, method, {count / 2, boundary}).value(0).toString());
    }
    return pieces;
}

std::optional<double> Element::value() const
{
    const QVariant value = property(valueInterface, "CurrentValue");
    return value.isValid() ? std::optional(value.toDouble()) : std::nullopt;
}

std::optional<double> Element::maximum() const
{
    const QVariant value = property(valueInterface, "MaximumValue");
    return value.isValid() ? std::optional(value.toDouble()) : std::nullopt;
}

QString Node::toString() const
{
    return u"%1 \"%2\""_s.arg(role, name);
}

QString described(const Node &node)
{
    QString text = node.toString();
    // The choice of a pop-up, the colour of a colour well: what a value would tell.
    if (node.role == u"combo box"_s || node.description.startsWith(u'#'))
        text += u" (%1)"_s.arg(node.description);
    if (node.has(State::checked))
        text += u", checked"_s;
    if (node.has(State::selected))
        text += u", selected"_s;
    if (node.has(State::expandable))
        text += node.has(State::expanded) ? u", expanded"_s : u", collapsed"_s;
    if (!node.has(State::enabled) || !node.has(State::sensitive))
        text += u", disabled"_s;
    return text;
}

static void walk(const Element &element, int depth, QList<Node> &nodes)
{
    nodes.append({element, depth, element.role(), element.name(), element.description(),
                  element.states(), element.actions()});
    if (depth == maximumDepth)
        return;
    for (const Element &child : element.children())
        walk(child, depth + 1, nodes);
}

QList<Node> walk(const Element &root)
{
    QList<Node> nodes;
    walk(root, 0, nodes);
    return nodes;
}

} // namespace pixpress::test
