// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/desktopsettings.h"

#include <QObject>
#include <QQmlEngine>

namespace pixpress {

/// Whether there is a desktop, which sets fonts of its choice. Without one Qt falls back to
/// whatever it finds first, and the program chooses better.
bool isFontSetByDesktop();

/// What the desktop asks of every window: dark or light, strong contrast, larger text, movement or
/// none. Follows it live. GUI thread only.
class Appearance : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark NOTIFY darkChanged)
    Q_PROPERTY(bool highContrast READ isHighContrast NOTIFY highContrastChanged)
    Q_PROPERTY(QString family READ family NOTIFY familyChanged)
    Q_PROPERTY(QString fixedFamily READ fixedFamily NOTIFY familyChanged)
    Q_PROPERTY(double textScale READ textScale NOTIFY textScaleChanged)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged)

public:
    explicit Appearance(QObject *parent = nullptr);
    ~Appearance() override;

    bool isDark() const { return m_dark; }
    bool isHighContrast() const { return m_preferences.highContrast; }
    double textScale() const { return m_textScale; } ///< 1 is the usual size; from 1 to 2.
    bool reducedMotion() const { return m_preferences.reducedMotion; }

    QString family() const;      ///< The application's font.
    QString fixedFamily() const; ///< The system's font of fixed pitch.

    /// Takes these for what the desktop prefers, until it tells of others.
    void setPreferences(DesktopPreferences preferences);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    // Not emitted when an equal value is set.
    void darkChanged();
    void highContrastChanged();
    void textScaleChanged();
    void reducedMotionChanged();

    void familyChanged(); ///< Of the application or the system, perhaps to the same.

private:
    DesktopSettings m_desktop;
    DesktopPreferences m_preferences;
    bool m_dark = false;
    double m_textScale = 1;
};

} // namespace pixpress
