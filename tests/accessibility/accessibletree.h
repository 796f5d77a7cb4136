// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QRect>
#include <QStringList>

#include <optional>

namespace pixpress::test {

/// How long to wait for what must come, in milliseconds: a tree is soon walked.
constexpr int deadline = 20'000;

/// How AT-SPI names an element on its bus.
struct ElementAddress
{
    QString service;
    QDBusObjectPath path;
};
QDBusArgument &operator<<(QDBusArgument &argument, const ElementAddress &address);
const QDBusArgument &operator>>(const QDBusArgument &argument, ElementAddress &address);

/// Those of AT-SPI's states that matter here, by their numbers.
enum class State : quint8 {
    active = 1,
    busy = 3,
    checked = 4,
    editable = 7,
    enabled = 8,
    expandable = 9,
    expanded = 10,
    focusable = 11,
    focused = 12,
    selectable = 22,
    selected = 23,
    sensitive = 24,
    showing = 25,
    visible = 30,
    checkable = 41,
    readOnly = 43,
};

/// One element of an application, as AT-SPI tells of it. Every question goes to the application,
/// and is answered with nothing when the element is gone.
class Element
{
public:
    Element() = default;
    Element(const QDBusConnection &bus, const ElementAddress &address);

    bool isNull() const { return m_address.service.isEmpty(); }
    bool operator==(const Element &other) const;

    QString role() const; ///< In AT-SPI's words: "push button".
    QString name() const;
    QString description() const;
    bool has(State state) const;
    QList<State> states() const;
    QRect area() const; ///< On the screen; empty for what has none.
    QStringList actions() const;
    Element parent() const;
    QList<Element> children() const;
    std::optional<QString> text() const; ///< Of what has a Text interface: all of it.
    std::optional<double> value() const; ///< Of what has a Value interface.
    std::optional<double> maximum() const;

    bool act(const QString &action) const; ///< False when there is no such action.
    bool takeFocus() const;
    bool setText(const QString &text) const; ///< Of what has an EditableText interface.
    /// As other answers than its text could tell of it: each character, word and line.
    QStringList textPieces() const;

private:
    QVariantList ask(const char *interface, const char *method,
                     const QVariantList &arguments = {}) const;
    QVariant property(const char *interface, const char *name) const;

    QDBusConnection m_bus = QDBusConnection(QString());
    ElementAddress m_address;
};

/// What a walk finds out about an element.
struct Node
{
    Element element;
    int depth = 0;
    QString role;
    QString name;
    QString description;
    QList<State> states;
    QStringList actions;

    bool has(State state) const { return states.contains(state); }
    bool isShowing() const { return has(State::showing) && has(State::visible); }
    bool isControl() const { return has(State::focusable) || !actions.isEmpty(); }
    QString toString() const; ///< 'push button "Add Files"'
};

/// The element and all below it, in the order of the tree.
QList<Node> walk(const Element &root);

/// With its choice and what may be of its states: 'check box "Enable Resize", checked'.
QString described(const Node &node);

} // namespace pixpress::test

Q_DECLARE_METATYPE(pixpress::test::ElementAddress)
