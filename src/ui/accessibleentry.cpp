// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/accessibleentry.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace pixpress {

namespace {

bool isPassword(const QObject *item)
{
    return item->property("echoMode").toInt() != 0; // Normal
}

bool carriesText(QAccessible::Event type)
{
    return type == QAccessible::TextInserted || type == QAccessible::TextRemoved ||
           type == QAccessible::TextUpdated;
}

void passOn(QAccessibleEvent *event)
{
    const auto handler = QAccessible::installUpdateHandler(nullptr); // which is to the platform
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(handler);
}

/// Qt Quick reports the text that is set in a password field as it is, and screen readers read it
/// out.
void passOnUnlessSecret(QAccessibleEvent *event)
{
    const QObject *item = event->object();
    if (!carriesText(event->type()) || !item || !isPassword(item))
        passOn(event);
}

/// Reports what is typed into a password field, as dots: Qt Quick reports nothing of it, and a
/// screen reader would be silent.
class PasswordTyping : public QObject
{
    Q_OBJECT

public:
    explicit PasswordTyping(QQuickItem *field) : QObject(field), m_field(field), m_length(length())
    {
        connect(field, SIGNAL(displayTextChanged()), this, SLOT(report()));
    }

private Q_SLOTS:
    void report()
    {
        const int before = std::exchange(m_length, length());
        const int grown = m_length - before;
        if (grown == 0 || !isPassword(m_field) || !m_field->hasActiveFocus())
            return;
        const int cursor = m_field->property("cursorPosition").toInt();
        const QString dots(std::abs(grown), u'•');
        if (grown > 0) {
            QAccessibleTextInsertEvent event(m_field, std::max(0, cursor - grown), dots);
            passOn(&event);
        } else {
            QAccessibleTextRemoveEvent event(m_field, cursor, dots);
            passOn(&event);
        }
    }

private:
    int length() const
    {
        return static_cast<int>(m_field->property("displayText").toString().size());
    }

    QQuickItem *const m_field;
    int m_length;
};

} // namespace

void keepPasswordsFromEvents()
{
    QAccessible::installUpdateHandler(&passOnUnlessSecret);
}

AccessibleEntry::AccessibleEntry(QQuickItem *item) : AccessibleItem(item)
{
    new PasswordTyping(item);
}

QAccessible::State AccessibleEntry::state() const
{
    QAccessible::State state = AccessibleItem::state();
    state.passwordEdit = isPassword(item());
    state.editable = !item()->property("readOnly").toBool();
    state.readOnly = !state.editable;
    state.selectableText = true;
    return state;
}

QString AccessibleEntry::text(QAccessible::Text type) const
{
    switch (type) {
    case QAccessible::Name: return item()->property("label").toString(); // see TextEntry.qml
    case QAccessible::Value: return shown();
    case QAccessible::Description: { // the placeholder, unless it is the name already
        const QString description = AccessibleItem::text(type);
        return description == text(QAccessible::Name) ? QString() : description;
    }
    default: return AccessibleItem::text(type);
    }
}

void *AccessibleEntry::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TextInterface)
        return static_cast<QAccessibleTextInterface *>(this);
    if (type == QAccessible::EditableTextInterface)
        return static_cast<QAccessibleEditableTextInterface *>(this);
    return AccessibleItem::interface_cast(type);
}

void AccessibleEntry::selection(int index, int *start, int *end) const
{
    *start = index == 0 ? item()->property("selectionStart").toInt() : 0;
    *end = index == 0 ? item()->property("selectionEnd").toInt() : 0;
}

int AccessibleEntry::selectionCount() const
{
    return item()->property("selectionStart") == item()->property("selectionEnd") ? 0 : 1;
}

void AccessibleEntry::select(int start, int end)
{
    QMetaObject::invokeMethod(item(), "select", Q_ARG(int, start), Q_ARG(int, end));
}

void AccessibleEntry::addSelection(int start, int end)
{
    select(start, end);
}

void AccessibleEntry::removeSelection(int /*index*/)
{
    QMetaObject::invokeMethod(item(), "deselect");
}

void AccessibleEntry::setSelection(int /*index*/, int start, int end)
{
    select(start, end);
}

int AccessibleEntry::cursorPosition() const
{
    return item()->property("cursorPosition").toInt();
}

void AccessibleEntry::setCursorPosition(int position)
{
    item()->setProperty("cursorPosition", position);
}

QString AccessibleEntry::text(int start, int end) const
{
    return shown().mid(start, end - start);
}

int AccessibleEntry::characterCount() const
{
    return static_cast<int>(shown().size());
}

QRect AccessibleEntry::characterRect(int offset) const
{
    QRectF area;
    QMetaObject::invokeMethod(item(), "positionToRectangle", Q_RETURN_ARG(QRectF, area),
                              Q_ARG(int, offset));
    return area.translated(item()->mapToGlobal(QPointF())).toAlignedRect();
}

int AccessibleEntry::offsetAtPoint(const QPoint &point) const
{
    int offset = -1;
    const qreal x = item()->mapFromGlobal(point).x();
    // The other half of the toolkit's method, which takes its arguments as a script passes them.
    for (int next = 0; next < characterCount() && offset < 0; ++next) {
        const QRect area = characterRect(next);
        if (x < item()->mapFromGlobal(QPointF(area.center())).x())
            offset = next;
    }
    return offset < 0 ? characterCount() : offset;
}

void AccessibleEntry::scrollToSubstring(int start, int /*end*/)
{
    setCursorPosition(start);
}

QString AccessibleEntry::attributes(int /*offset*/, int *start, int *end) const
{
    *start = 0;
    *end = characterCount();
    return {};
}

void AccessibleEntry::edited()
{
    QMetaObject::invokeMethod(item(), "textEdited"); // as by typing, which the view listens to
}

void AccessibleEntry::deleteText(int start, int end)
{
    QMetaObject::invokeMethod(item(), "remove", Q_ARG(int, start), Q_ARG(int, end));
    edited();
}

void AccessibleEntry::insertText(int offset, const QString &text)
{
    QMetaObject::invokeMethod(item(), "insert", Q_ARG(int, offset), Q_ARG(QString, text));
    edited();
}

void AccessibleEntry::replaceText(int start, int end, const QString &text)
{
    QMetaObject::invokeMethod(item(), "remove", Q_ARG(int, start), Q_ARG(int, end));
    insertText(start, text);
}

} // namespace pixpress

#include "accessibleentry.moc"
