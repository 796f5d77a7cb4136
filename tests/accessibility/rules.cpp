// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "rules.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

/// Those that somebody does something with.
const QSet<QString> controlRoles{u"check box"_s,    u"combo box"_s,     u"link"_s,
                                 u"list"_s,         u"list item"_s,     u"menu item"_s,
                                 u"page tab"_s,     u"password text"_s, u"push button"_s,
                                 u"radio button"_s, u"scroll bar"_s,    u"text"_s};
/// Those that tell something.
const QSet<QString> textRoles{u"dialog"_s, u"frame"_s,        u"heading"_s,
                              u"label"_s,  u"notification"_s, u"progress bar"_s};
/// Those that only hold others; they may do without a name.
const QSet<QString> holderRoles{u"application"_s, u"menu bar"_s,   u"page tab list"_s,
                                u"panel"_s,       u"popup menu"_s, u"tool bar"_s};

QString faultOf(const Node &node, const QRect &window)
{
    const bool isControl = controlRoles.contains(node.role);
    if (!isControl && !textRoles.contains(node.role) && !holderRoles.contains(node.role))
        return u"has no role of ours"_s;
    if (!isControl && node.isControl())
        return u"can be acted on, but is no control"_s;
    if (node.name.isEmpty() && !holderRoles.contains(node.role))
        return u"has no name"_s;
    if (node.description == node.name && isControl)
        return u"has its name for a description"_s;
    if (node.has(State::enabled) != node.has(State::sensitive))
        return u"is both enabled and not"_s;
    if (!node.has(State::enabled) && node.isControl())
        return u"is disabled, but can be acted on"_s;
    if (isControl && node.role != u"list"_s && node.has(State::enabled) &&
        !node.has(State::focusable))
        return u"cannot be reached"_s;
    if (node.role != u"application"_s && !window.intersects(node.element.area()))
        return u"is outside of the window"_s;
    if ((node.role == u"text"_s || node.role == u"password text"_s) && !node.has(State::editable))
        return u"cannot be edited"_s;
    return {};
}

} // namespace

QString faults(const QList<Node> &tree)
{
    QStringList faults;
    QSet<QString> controls;
    QRect window;
    for (const Node &node : tree) {
        if (node.role == u"frame"_s)
            window = node.element.area();
        if (node.isShowing() && controlRoles.contains(node.role))
            controls.insert(node.name);
    }
    for (const Node &node : tree) {
        if (!node.isShowing())
            continue;
        if (const QString fault = faultOf(node, window); !fault.isEmpty())
            faults.append(node.toString() + u' ' + fault);
        if (node.role == u"label"_s && controls.contains(node.name))
            faults.append(node.toString() + u" repeats a control"_s);
    }
    return faults.join(u'\n');
}

} // namespace pixpress::test
