// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/appearance.h"

#include "ui/desktopsettings.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QStyleHints>

namespace pixpress {

namespace {

bool isPaletteDark()
{
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

} // namespace

bool isFontSetByDesktop()
{
    return qEnvironmentVariableIsSet("XDG_CURRENT_DESKTOP");
}

Appearance::Appearance(QObject *parent)
    : QObject(parent), m_desktop(std::make_unique<DesktopSettings>()), m_dark(isPaletteDark())
{
    connect(m_desktop.get(), &DesktopSettings::changed, this, &Appearance::update);
    qApp->installEventFilter(this);
    // Where Qt knows no desktop it leaves out hovering, and with it help and the marking in menus.
    QGuiApplication::styleHints()->setUseHoverEffects(true);
}

Appearance::~Appearance() = default;

QString Appearance::family() const
{
    return QGuiApplication::font().family();
}

QString Appearance::fixedFamily() const
{
    const QString ownChoice = QStringLiteral("JetBrains Mono");
    if (!isFontSetByDesktop() && QFontDatabase::hasFamily(ownChoice))
        return ownChoice;
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

bool Appearance::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        update();
    return QObject::eventFilter(watched, event);
}

void Appearance::update()
{
    const bool dark = m_desktop->prefersDark().value_or(isPaletteDark());
    if (std::exchange(m_dark, dark) != dark)
        Q_EMIT darkChanged();
    const bool reduced = m_desktop->reducedMotion();
    if (std::exchange(m_reducedMotion, reduced) != reduced)
        Q_EMIT reducedMotionChanged();
}

} // namespace pixpress
