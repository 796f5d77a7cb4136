// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/appstate.h"

#include <QColor>
#include <QObject>
#include <QQmlEngine>
#include <QStringList>

#include <functional>
#include <optional>

namespace pixpress {

/// The application state's current options, field by field, as the controls of a form need them.
/// Holds nothing of its own: every change takes effect for the next files at once. GUI thread only.
class OptionsEditor : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has one.")
    Q_PROPERTY(bool resizeEnabled READ resizeEnabled WRITE setResizeEnabled NOTIFY changed)
    Q_PROPERTY(QStringList resizeModes READ resizeModes CONSTANT)
    Q_PROPERTY(int resizeMode READ resizeMode WRITE setResizeMode NOTIFY changed)
    Q_PROPERTY(QString resizeModeDescription READ resizeModeDescription NOTIFY changed)
    Q_PROPERTY(bool isScale READ isScale NOTIFY changed)
    Q_PROPERTY(QString width READ width WRITE setWidth NOTIFY changed)
    Q_PROPERTY(QString height READ height WRITE setHeight NOTIFY changed)
    Q_PROPERTY(bool hasOneDimension READ hasOneDimension NOTIFY changed)
    Q_PROPERTY(bool convertEnabled READ convertEnabled WRITE setConvertEnabled NOTIFY changed)
    Q_PROPERTY(QStringList formats READ formats CONSTANT)
    Q_PROPERTY(int convertFormat READ convertFormat WRITE setConvertFormat NOTIFY changed)
    Q_PROPERTY(bool requiresBackground READ requiresBackground NOTIFY changed)
    Q_PROPERTY(QColor background READ background WRITE setBackground NOTIFY changed)
    Q_PROPERTY(QString backgroundText READ backgroundText WRITE setBackgroundText NOTIFY changed)
    Q_PROPERTY(
        bool preserveCopyright READ preserveCopyright WRITE setPreserveCopyright NOTIFY changed)
    Q_PROPERTY(bool preserveCreation READ preserveCreation WRITE setPreserveCreation NOTIFY changed)
    Q_PROPERTY(bool preserveLocation READ preserveLocation WRITE setPreserveLocation NOTIFY changed)
    Q_PROPERTY(QStringList destinations READ destinations CONSTANT)
    Q_PROPERTY(int destination READ destination WRITE setDestination NOTIFY changed)
    Q_PROPERTY(QString destinationDescription READ destinationDescription NOTIFY changed)
    Q_PROPERTY(bool savesToFolder READ savesToFolder NOTIFY changed)
    Q_PROPERTY(QString folder READ folder NOTIFY changed)

public:
    /// Lets the user pick one folder, modally; none when that was cancelled.
    using FolderChooser = std::function<std::optional<QUrl>()>;

    /// `appState` must outlive the editor.
    OptionsEditor(AppState &appState, FolderChooser chooser);

    bool resizeEnabled() const { return options().resizeEnabled; }
    QStringList resizeModes() const; ///< In the order of their index.
    int resizeMode() const { return static_cast<int>(options().resizeMode); }
    QString resizeModeDescription() const;
    bool isScale() const { return options().resizeMode == ResizeMode::scale; }
    QString width() const; ///< Pixels in digits; empty for no value.
    QString height() const;
    bool hasOneDimension() const;
    bool convertEnabled() const { return options().convertEnabled; }
    QStringList formats() const; ///< In the order of their index.
    int convertFormat() const { return static_cast<int>(options().convertFormat); }
    bool requiresBackground() const { return options().requiresBackground(); }
    QColor background() const; ///< White when the options hold no readable colour.
    QString backgroundText() const { return options().backgroundColor; } ///< "#rrggbb"
    bool preserveCopyright() const { return options().preserveCopyright; }
    bool preserveCreation() const { return options().preserveCreation; }
    bool preserveLocation() const { return options().preserveLocation; }
    QStringList destinations() const; ///< In the order of their index.
    int destination() const { return static_cast<int>(options().outputDestination); }
    QString destinationDescription() const;
    bool savesToFolder() const;
    QString folder() const; ///< Full path in the platform's own form, on one line; empty when none.

    void setResizeEnabled(bool enabled);
    // An index that is none changes nothing; a text that is no number stands for no value.
    void setResizeMode(int index);
    void setWidth(const QString &digits);
    void setHeight(const QString &digits);
    void setConvertEnabled(bool enabled);
    void setConvertFormat(int index);
    void setBackground(const QColor &colour);
    void setBackgroundText(const QString &text); ///< A text that is no colour changes nothing.
    void setPreserveCopyright(bool preserve);
    void setPreserveCreation(bool preserve);
    void setPreserveLocation(bool preserve);
    void setDestination(int index);

    /// The digits that a size gets from what is typed for it; empty when that is no number.
    Q_INVOKABLE static QString numberIn(const QString &text);
    /// Whether a typed text is a colour.
    Q_INVOKABLE static bool isColour(const QString &text);

    /// Returns when the panel is closed; when that was cancelled the folder stays.
    Q_INVOKABLE void chooseFolder();

Q_SIGNALS:
    void changed(); ///< Of any field; not emitted when an equal value is set.

private:
    const CompressionOptions &options() const { return m_appState.options(); }
    template <typename T>
    void set(T CompressionOptions::*field, T value);

    AppState &m_appState;
    const FolderChooser m_chooseFolder;
};

} // namespace pixpress
