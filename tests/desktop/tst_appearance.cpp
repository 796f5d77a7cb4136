// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"
#include "ui/desktopsettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

/// A desktop portal that tells what its user prefers.
class Portal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    const QString bus = u"portal"_s;
    const QString path = u"/org/freedesktop/portal/desktop"_s;

    void change(const QString &group, const QString &name, const QVariant &value)
    {
        m_values[group + name] = value;
        auto signal = QDBusMessage::createSignal(path, u"org.freedesktop.portal.Settings"_s,
                                                 u"SettingChanged"_s);
        signal << group << name << QVariant::fromValue(QDBusVariant(value));
        QDBusConnection(bus).send(signal);
    }

public Q_SLOTS:
    QDBusVariant Read(const QString &group, const QString &name)
    {
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_values.value(group + name, 0U))));
    }

private:
    QHash<QString, QVariant> m_values;
};

/// Colours and motion as the desktop's user prefers them.
class AppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void preferences_areReadAndFollowed();
    void window_followsTheColourScheme();

private:
    Desktop m_desktop;
    Portal m_portal;
    const QString m_appearance = u"org.freedesktop.appearance"_s;
    const QString m_interface = u"org.gnome.desktop.interface"_s;
};

void AppearanceTest::initTestCase()
{
    QVERIFY(m_desktop.start());
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_desktop.busAddress().toLatin1());
    auto connection = QDBusConnection::connectToBus(m_desktop.busAddress(), m_portal.bus);
    QVERIFY(connection.registerObject(m_portal.path, &m_portal, QDBusConnection::ExportAllSlots));
    QVERIFY(connection.registerService(u"org.freedesktop.portal.Desktop"_s));
}

void AppearanceTest::cleanupTestCase()
{
    QDBusConnection::disconnectFromBus(m_portal.bus);
}

void AppearanceTest::preferences_areReadAndFollowed()
{
    m_portal.change(m_appearance, u"color-scheme"_s, 1U);
    m_portal.change(m_interface, u"enable-animations"_s, false);
    DesktopSettings settings;
    QVERIFY(!settings.prefersDark());
    QVERIFY(!settings.reducedMotion());
    QTRY_COMPARE(settings.prefersDark(), std::optional(true));
    QTRY_VERIFY(settings.reducedMotion());

    m_portal.change(m_appearance, u"color-scheme"_s, 2U);
    QTRY_COMPARE(settings.prefersDark(), std::optional(false));
    m_portal.change(m_appearance, u"color-scheme"_s, 0U);
    QTRY_VERIFY(!settings.prefersDark());
    m_portal.change(m_interface, u"enable-animations"_s, true);
    QTRY_VERIFY(!settings.reducedMotion());

    QSignalSpy changed(&settings, &DesktopSettings::changed);
    m_portal.change(m_appearance, u"contrast"_s, 1U);
    m_portal.change(m_appearance, u"color-scheme"_s, 1U);
    QTRY_COMPARE(settings.prefersDark(), std::optional(true));
    QCOMPARE(changed.size(), 1);
}

void AppearanceTest::window_followsTheColourScheme()
{
    m_portal.change(m_appearance, u"color-scheme"_s, 1U);
    Program program(m_desktop, QStringLiteral(PIXPRESS_OFFLINE));
    QVERIFY(program.isInFront());
    const auto ground = [&] { return qGray(program.picture().pixel(3, 3)); };
    QTRY_VERIFY_WITH_TIMEOUT(ground() < 60, patience);
    m_portal.change(m_appearance, u"color-scheme"_s, 2U);
    QTRY_VERIFY_WITH_TIMEOUT(ground() > 200, patience);
    m_portal.change(m_appearance, u"color-scheme"_s, 1U);
    QTRY_VERIFY_WITH_TIMEOUT(ground() < 60, patience);
    QCOMPARE(program.errors(), "");
}

QTEST_GUILESS_MAIN(AppearanceTest)
#include "tst_appearance.moc"
