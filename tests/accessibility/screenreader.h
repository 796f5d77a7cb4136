// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "accessibletree.h"
#include "desktop/desktop.h"

#include <QDBusMessage>

namespace pixpress::test {

/// What a screen reader is to the applications of a desktop: assistive technology is switched on,
/// their trees can be walked, and what they tell is listened to.
class ScreenReader : public QObject
{
    Q_OBJECT

public:
    ScreenReader();
    ~ScreenReader() override;

    /// Returns once applications can be seen.
    bool start(const Desktop &desktop);

    /// The one application that runs, once it is there.
    Element application() const;
    QList<Node> tree() const { return walk(application()); }
    /// The controls that show, one a line, as described() tells of them.
    QString controls() const;
    QStringList rows() const; ///< The names of the list items that show.
    /// What shows with this role and name; waits for it. Null when it does not come.
    Node node(const QString &role, const QString &name) const;
    Element find(const QString &role, const QString &name) const
    {
        return node(role, name).element;
    }
    /// Where the keyboard is, by what has been told and by what the element says of itself.
    QString focus() const;

    /// Clears what has been heard so far, the last word of it included.
    void hearOut();
    /// All of the application before.
    void forget();

    /// What would be read out, in its order: the names of rows that have changed, and of what has
    /// been announced.
    QStringList heard;
    QStringList texts; ///< That came with events.

private Q_SLOTS:
    void onEvent(const QDBusMessage &message);

private:
    void listen();

    QProcess m_launcher;
    QDBusConnection m_session = QDBusConnection(QString());
    QDBusConnection m_bus = QDBusConnection(QString());
    Element m_focused;
};

} // namespace pixpress::test
