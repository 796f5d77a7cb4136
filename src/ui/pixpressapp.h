// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/appstate.h"
#include "ui/optionseditor.h"
#include "ui/panels.h"
#include "ui/reveal.h"
#include "ui/taskmodel.h"
#include "ui/thumbnails.h"
#include "worker/worker.h"

#include <QObject>
#include <QQmlEngine>

#include <list>
#include <optional>

class QQmlApplicationEngine;

namespace pixpress {

/// The application behind its one window: owns the state and what the views need around it. Every
/// view is handed this one object. GUI thread only.
class PixpressApp : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The process has one.")
    Q_PROPERTY(pixpress::AppState *appState READ appState CONSTANT)
    Q_PROPERTY(pixpress::TaskModel *tasks READ tasks CONSTANT)
    Q_PROPERTY(pixpress::OptionsEditor *options READ options CONSTANT)
    Q_PROPERTY(pixpress::Thumbnails *thumbnails READ thumbnails CONSTANT)
    Q_PROPERTY(bool isOffline READ isOffline CONSTANT)
    Q_PROPERTY(bool needsKey READ needsKey NOTIFY needsKeyChanged)
    Q_PROPERTY(bool isPanelOpen READ isPanelOpen NOTIFY isPanelOpenChanged)

public:
    /// What the application reaches outside itself; a test puts its own in.
    struct Seams
    {
        OpenPanel openPanel = {};                        ///< By default Qt's dialog.
        OptionsEditor::FolderChooser folderChooser = {}; ///< By default Qt's dialog.
        Revealer reveal = &revealFile;
        QuotaTracker::Clock clock = &QuotaTracker::systemTime;
    };

    /// With the web service, or without one: pictures are then compressed on this computer, and
    /// no key is needed. `settings` must outlive the application.
    PixpressApp(SettingsStore &settings, const std::optional<ServiceConfig> &service);
    PixpressApp(SettingsStore &settings, const std::optional<ServiceConfig> &service, Seams seams);
    ~PixpressApp() override;

    AppState *appState() { return &m_appState; }
    TaskModel *tasks() { return &m_tasks; }
    OptionsEditor *options() { return &m_options; }
    Thumbnails *thumbnails() { return &m_thumbnails; }
    bool isOffline() const { return !m_service; } ///< There is neither key nor quota.
    /// Nothing can be compressed before the user has given a key.
    bool needsKey() const { return !isOffline() && !m_appState.isAPIKeyConfigured(); }
    /// The user is picking files or a folder. There is one panel at a time: asked for meanwhile,
    /// another is as good as cancelled.
    bool isPanelOpen() const { return m_isPanelOpen; }

    /// Opens the main window, in front of the others. `engine`, which is makeEngine()'s, must
    /// outlive it; false when the window cannot be made.
    bool show(QQmlApplicationEngine &engine);

    /// Adds the files that the program was started with, once there is a key.
    void openFiles(const QList<QUrl> &files);
    /// Lets the user pick files, after the handler that asks for it has returned: the panel's own
    /// event loop could delete the view whose handler that is.
    Q_INVOKABLE void openFilePicker();
    /// Whether a drag of these over the window is any of its business: not that of a web link, and
    /// none while a panel is open.
    bool acceptsDrag(const QList<QUrl> &dragged) const;
    /// Adds what was dropped on the window: local files of a supported extension, in one batch.
    Q_INVOKABLE void handleDrop(const QList<QUrl> &dropped);
    /// Makes the failed task of this row pending again, with the options of this moment.
    Q_INVOKABLE void retry(int row);
    /// Shows the file in the desktop's file browser.
    Q_INVOKABLE void reveal(const QUrl &file);
    // As the queue's.
    Q_INVOKABLE void clearCompleted();
    Q_INVOKABLE void clearAll();

    /// The stored key, to fill a masked field with; empty when there is none.
    Q_INVOKABLE QString storedKey() const;
    /// Saves the key without asking the service.
    Q_INVOKABLE void saveAPIKey(const QString &key);
    /// Asks the web service, and saves the key when it is good, unless a later wish of the user's
    /// has saved one meanwhile. Any number at a time.
    QCoro::Task<TinifyService::Result<bool>> validateAPIKey(QString key);

Q_SIGNALS:
    void isPanelOpenChanged();
    void needsKeyChanged();

private:
    /// What the panel picks; as if cancelled when another is open.
    template <typename Panel>
    auto pickAlone(const Panel &panel) -> decltype(panel());
    void setPanelOpen(bool open);
    OpenPanel filePanel(OpenPanel own);
    OptionsEditor::FolderChooser folderPanel(OptionsEditor::FolderChooser own);

    SettingsStore &m_settings;
    int m_lastWish = 0;  ///< Numbers what the user asked to check or to save.
    int m_savedWish = 0; ///< By which the stored key came.
    Panels m_panels;
    bool m_isPanelOpen = false;
    const Revealer m_reveal;
    const std::optional<ServiceConfig> m_service;
    Worker m_worker;
    AppState m_appState;
    TaskModel m_tasks;
    OptionsEditor m_options;
    Thumbnails m_thumbnails{m_worker};
    /// One a running check. Last, so that they go first: that ends the checks.
    std::list<TinifyService> m_checks;
};

} // namespace pixpress
