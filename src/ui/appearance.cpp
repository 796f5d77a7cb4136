// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/appearance.h"

#include "ui/textscale.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>
#include <QStyleHints>

#include <utility>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

bool isPaletteDark()
{
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
}

double scaleOfText(const DesktopPreferences &preferences)
{
    const double points = QGuiApplication::font().pointSizeF();
    const bool isStated = isFontSetByDesktop() && points > 0; // a font in pixels has none
    return textScale({.factor = preferences.textScale,
                      .points = isStated ? std::optional(points) : std::nullopt,
                      // As desktops do it since X servers tell a resolution: Xft.dpi.
                      .isInScreenScale = QGuiApplication::platformName() == u"xcb"});
}

} // namespace

bool isFontSetByDesktop()
{
    return qEnvironmentVariableIsSet("XDG_CURRENT_DESKTOP");
}

Appearance::Appearance(QObject *parent)
    : QObject(parent), m_dark(isPaletteDark()), m_textScale(scaleOfText({}))
{
    connect(&m_desktop, &DesktopSettings::changed, this,
            [this] { setPreferences(m_desktop.preferences()); });
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
    QString ownChoice = u"JetBrains Mono"_s;
    if (!isFontSetByDesktop() && QFontDatabase::hasFamily(ownChoice))
        return ownChoice;
    return QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

void Appearance::setPreferences(DesktopPreferences preferences)
{
    const DesktopPreferences previous = std::exchange(m_preferences, preferences);
    if (previous.highContrast != preferences.highContrast)
        Q_EMIT highContrastChanged();
    if (previous.reducedMotion != preferences.reducedMotion)
        Q_EMIT reducedMotionChanged();
    const bool dark = preferences.dark.value_or(isPaletteDark());
    if (std::exchange(m_dark, dark) != dark)
        Q_EMIT darkChanged();
    const double scale = scaleOfText(preferences);
    if (std::exchange(m_textScale, scale) != scale)
        Q_EMIT textScaleChanged();
}

bool Appearance::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        setPreferences(m_preferences);
    if (watched == qApp && event->type() == QEvent::ApplicationFontChange) {
        setPreferences(m_preferences);
        Q_EMIT familyChanged();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace pixpress
