// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QAccessible>
#include <QLibraryInfo>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;

/// The faults of Qt Quick's accessibility that AccessibleItem and AccessibleEntry work around, and
/// the versions that have them. A failure here means that a version of Qt differs from the table:
/// correct the row, and remove the workaround when no supported version needs it.
class QtFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void fault_isInTheseVersions_data();
    void fault_isInTheseVersions();
};

namespace {

using Interface = QAccessibleInterface;
using HasFault = bool (*)(QQuickItem &item, Interface &interface);

int g_reportsOfEnabling = 0;

void countReports(QAccessibleEvent *event)
{
    if (event->type() == QAccessible::StateChanged &&
        static_cast<QAccessibleStateChangeEvent *>(event)->changedStates().disabled)
        ++g_reportsOfEnabling;
}

QQuickItem *tested(QQuickItem *below)
{
    if (below->objectName() == u"tested")
        return below;
    for (QQuickItem *child : below->childItems()) {
        if (QQuickItem *found = tested(child))
            return found;
    }
    return nullptr;
}

} // namespace

Q_DECLARE_METATYPE(HasFault)

void QtFaultsTest::initTestCase()
{
    QAccessible::setActive(true);
}

void QtFaultsTest::fault_isInTheseVersions_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<HasFault>("hasFault");
    QTest::addColumn<QTypeRevision>("firstWithout"); // 9.0: none is known
    const QTypeRevision none = QTypeRevision::fromVersion(9, 0);
    const QTypeRevision qt68 = QTypeRevision::fromVersion(6, 8); // tried: 6.4.2, 6.8.2, 6.11.2
    const QTypeRevision qt611 = QTypeRevision::fromVersion(6, 11);

    QTest::newRow("a disabled control is not disabled")
        << QByteArray("T.Button { enabled: false; Accessible.role: Accessible.Button;")
        << HasFault([](QQuickItem &, Interface &found) { return !found.state().disabled; }) << qt68;
    QTest::newRow("disabling a control is not reported")
        << QByteArray("T.Button { Accessible.role: Accessible.Button;")
        << HasFault([](QQuickItem &item, Interface &) {
               const auto before = QAccessible::installUpdateHandler(countReports);
               item.setEnabled(false);
               QAccessible::installUpdateHandler(before);
               return std::exchange(g_reportsOfEnabling, 0) == 0;
           })
        << qt68;
    QTest::newRow("the attached role is ignored")
        << QByteArray("T.MenuBarItem { Accessible.role: Accessible.MenuItem;")
        << HasFault(
               [](QQuickItem &, Interface &found) { return found.role() != QAccessible::MenuItem; })
        << qt68;
    QTest::newRow("a password can be read")
        << QByteArray("T.TextField { Accessible.role: Accessible.EditableText;"
                      "echoMode: TextInput.Password; text: 'sesame';")
        << HasFault([](QQuickItem &, Interface &found) {
               return found.text(QAccessible::Value) == u"sesame";
           })
        << qt68;
    QTest::newRow("a field cannot be edited")
        << QByteArray("T.TextField { Accessible.role: Accessible.EditableText;")
        << HasFault([](QQuickItem &, Interface &found) { return !found.editableTextInterface(); })
        << qt611;
    QTest::newRow("characters have no area")
        << QByteArray("T.TextField { Accessible.role: Accessible.EditableText; text: 'sesame';")
        << HasFault([](QQuickItem &, Interface &found) {
               return found.textInterface()->characterRect(1).isEmpty();
           })
        << none;
    QTest::newRow("a text can take the keyboard")
        << QByteArray("Text { text: 'Queued'; Accessible.role: Accessible.StaticText;")
        << HasFault([](QQuickItem &, Interface &found) { return bool(found.state().focusable); })
        << none;
    QTest::newRow("what is scrolled out of a list shows")
        << QByteArray("Flickable { width: 90; height: 40; clip: true; Item { objectName: 'tested';"
                      "y: 50; width: 20; height: 20; Accessible.role: Accessible.ListItem }")
        << HasFault([](QQuickItem &, Interface &found) { return !found.state().offscreen; })
        << none;
    QTest::newRow("a list of choices has no state of being open")
        << QByteArray("T.ComboBox { model: 2; Accessible.role: Accessible.ComboBox;")
        << HasFault([](QQuickItem &, Interface &found) { return !found.state().expandable; })
        << none;
    QTest::newRow("the focus that assistive technology sets is not drawn")
        << QByteArray("T.Button { focusPolicy: Qt.StrongFocus; Accessible.role: Accessible.Button;")
        << HasFault([](QQuickItem &item, Interface &found) {
               found.actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
               return !item.property("visualFocus").toBool();
           })
        << none;
}

void QtFaultsTest::fault_isInTheseVersions()
{
    QFETCH(QByteArray, qml);
    QFETCH(HasFault, hasFault);
    QFETCH(QTypeRevision, firstWithout);
    if (!qml.contains("objectName"))
        qml += "objectName: 'tested'; width: 20; height: 20";
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick; import QtQuick.Templates as T\n"
                      "Window { width: 200; height: 200; visible: true; " +
                          qml + " } }",
                      {});
    const std::unique_ptr<QObject> object(component.create());
    auto *window = qobject_cast<QQuickWindow *>(object.get());
    QVERIFY2(window, qPrintable(component.errorString()));
    window->requestActivate();
    QVERIFY(QTest::qWaitForWindowActive(window));
    QQuickItem *item = tested(window->contentItem());
    QVERIFY(item);
    Interface *interface = QAccessible::queryAccessibleInterface(item);
    QVERIFY(interface);
    const auto version = QTypeRevision::fromVersion(QLibraryInfo::version().majorVersion(),
                                                    QLibraryInfo::version().minorVersion());
    QCOMPARE(hasFault(*item, *interface), version < firstWithout);
}

QTEST_MAIN(QtFaultsTest)
#include "tst_qtfaults.moc"
