// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QQmlEngine>

#include <memory>

namespace pixpress {

/// Without a desktop that sets fonts of its choice, Qt falls back to whatever it finds first.
bool isFontSetByDesktop();

/// What the desktop asks of every window: dark or light, movement or none. Follows it live. GUI
/// thread only.
class Appearance : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ isDark NOTIFY darkChanged)
    Q_PROPERTY(QString family READ family CONSTANT)
    Q_PROPERTY(QString fixedFamily READ fixedFamily CONSTANT)
    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged)

public:
    explicit Appearance(QObject *parent = nullptr);
    ~Appearance() override;

    bool isDark() const { return m_dark; }
    bool reducedMotion() const { return m_reducedMotion; }

    QString family() const;      ///< The application's font.
    QString fixedFamily() const; ///< The system's font of fixed pitch.

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    // Not emitted when an equal value is set.
    void darkChanged();
    void reducedMotionChanged();

private:
    void update();

    std::unique_ptr<class DesktopSettings> m_desktop;
    bool m_dark = false;
    bool m_reducedMotion = false;
};

} // namespace pixpress
