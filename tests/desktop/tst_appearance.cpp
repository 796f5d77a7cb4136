// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "program.h"
#include "ui/desktopsettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <span>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

using Groups = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(Groups)

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
        m_groups[group][name] = value;
        auto signal = QDBusMessage::createSignal(path, u"org.freedesktop.portal.Settings"_s,
                                                 u"SettingChanged"_s);
        signal << group << name << QVariant::fromValue(QDBusVariant(value));
        QDBusConnection(bus).send(signal);
    }

    void forget() { m_groups.clear(); }

public Q_SLOTS:
    Groups ReadAll(const QStringList &wanted)
    {
        Groups groups;
        for (const QString &group : wanted) {
            if (m_groups.contains(group))
                groups.insert(group, m_groups.value(group));
        }
        return groups;
    }

private:
    Groups m_groups;
};

/// Colours, contrast, text and motion as the desktop's user prefers them.
class AppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { m_portal.forget(); }
    void cleanupTestCase();

    void preferences_areReadAndFollowed();
    void eitherOfTheContrastSettings_counts();
    void withoutAPortal_allIsAsUsual();
    void window_followsTheColourScheme();
    void window_followsTheContrast();

private:
    Desktop m_desktop;
    Portal m_portal;
    const QString m_appearance = u"org.freedesktop.appearance"_s;
    const QString m_interface = u"org.gnome.desktop.interface"_s;
    const QString m_access = u"org.gnome.desktop.a11y.interface"_s;
};

void AppearanceTest::initTestCase()
{
    qDBusRegisterMetaType<Groups>();
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
    m_portal.change(m_appearance, u"contrast"_s, 1U);
    m_portal.change(m_interface, u"enable-animations"_s, false);
    m_portal.change(m_interface, u"text-scaling-factor"_s, 1.25);
    DesktopSettings settings;
    QSignalSpy changed(&settings, &DesktopSettings::changed);
    QCOMPARE(settings.preferences(), DesktopPreferences());
    const DesktopPreferences all{
        .dark = true, .reducedMotion = true, .highContrast = true, .textScale = 1.25};
    QTRY_COMPARE(settings.preferences(), all);
    QCOMPARE(changed.size(), 1);

    m_portal.change(m_appearance, u"color-scheme"_s, 2U);
    QTRY_COMPARE(settings.preferences().dark, std::optional(false));
    m_portal.change(m_appearance, u"color-scheme"_s, 0U);
    QTRY_VERIFY(!settings.preferences().dark);
    m_portal.change(m_appearance, u"contrast"_s, 0U);
    QTRY_VERIFY(!settings.preferences().highContrast);
    m_portal.change(m_interface, u"enable-animations"_s, true);
    QTRY_VERIFY(!settings.preferences().reducedMotion);
    m_portal.change(m_interface, u"text-scaling-factor"_s, 1.0);
    QTRY_COMPARE(settings.preferences(), DesktopPreferences());

    changed.clear();
    m_portal.change(m_interface, u"accent-color"_s, u"teal"_s);
    m_portal.change(u"org.gnome.desktop.a11y"_s, u"contrast"_s, 1U);
    m_portal.change(m_appearance, u"color-scheme"_s, 1U);
    QTRY_VERIFY(settings.preferences().dark);
    QCOMPARE(changed.size(), 1);
}

void AppearanceTest::eitherOfTheContrastSettings_counts()
{
    m_portal.change(m_access, u"high-contrast"_s, true);
    DesktopSettings settings;
    QTRY_VERIFY(settings.preferences().highContrast);
    m_portal.change(m_appearance, u"contrast"_s, 1U);
    m_portal.change(m_access, u"high-contrast"_s, false);
    m_portal.change(m_interface, u"text-scaling-factor"_s, 2.0); // which comes last
    QTRY_COMPARE(settings.preferences().textScale, 2.0);
    QVERIFY(settings.preferences().highContrast);
    m_portal.change(m_appearance, u"contrast"_s, 0U);
    QTRY_VERIFY(!settings.preferences().highContrast);
}

void AppearanceTest::withoutAPortal_allIsAsUsual()
{
    QVERIFY(QDBusConnection(m_portal.bus).unregisterService(u"org.freedesktop.portal.Desktop"_s));
    DesktopSettings settings;
    QSignalSpy changed(&settings, &DesktopSettings::changed);
    Program program(m_desktop, QStringLiteral(PIXPRESS_OFFLINE));
    QVERIFY(program.isInFront());
    QCOMPARE(program.errors(), "");
    QCOMPARE(settings.preferences(), DesktopPreferences());
    QCOMPARE(changed.size(), 0);
    QVERIFY(QDBusConnection(m_portal.bus).registerService(u"org.freedesktop.portal.Desktop"_s));
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

void AppearanceTest::window_followsTheContrast()
{
    Program program(m_desktop, QStringLiteral(PIXPRESS_OFFLINE));
    QVERIFY(program.isInFront());
    const auto isBlackSomewhere = [&] {
        const QImage picture = program.picture();
        const std::span points(reinterpret_cast<const QRgb *>(picture.constBits()),
                               static_cast<size_t>(picture.sizeInBytes()) / sizeof(QRgb));
        return std::ranges::any_of(points, [](QRgb point) { return qGray(point) < 8; });
    };
    QVERIFY(!isBlackSomewhere());
    m_portal.change(m_appearance, u"contrast"_s, 1U);
    QTRY_VERIFY_WITH_TIMEOUT(isBlackSomewhere(), patience);
    m_portal.change(m_appearance, u"contrast"_s, 0U);
    QTRY_VERIFY_WITH_TIMEOUT(!isBlackSomewhere(), patience);
    QCOMPARE(program.errors(), "");
}

QTEST_GUILESS_MAIN(AppearanceTest)
#include "tst_appearance.moc"
