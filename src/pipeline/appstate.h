// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"
#include "pipeline/queue.h"
#include "pipeline/quota.h"
#include "pipeline/settings.h"
#include "service/tinifyservice.h"

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <memory>

namespace pixpress {

/// How the panel in which files are picked is to be set up.
struct OpenPanelRequest
{
    QString message;
    QStringList contentTypes; ///< MIME types offered, in this order.
    bool allowsOtherFileTypes = false;
    bool canChooseFiles = false;
    bool canChooseDirectories = false;
    bool allowsMultipleSelection = false;
};

/// Shows the panel modally and returns what was picked; nothing when it was cancelled.
using OpenPanel = std::function<QList<QUrl>(const OpenPanelRequest &)>;

/// The state behind the window: the queue, the quota, the current options, whether there is a key.
/// One for the life of the process. GUI thread only.
class AppState : public QObject
{
    Q_OBJECT
    Q_PROPERTY(pixpress::QuotaTracker *quotaTracker READ quotaTracker CONSTANT)
    Q_PROPERTY(pixpress::CompressionQueue *compressionQueue READ compressionQueue CONSTANT)
    Q_PROPERTY(bool showSettings READ showSettings WRITE setShowSettings NOTIFY showSettingsChanged)
    Q_PROPERTY(bool isAPIKeyConfigured READ isAPIKeyConfigured NOTIFY isAPIKeyConfiguredChanged)

public:
    /// `settings` must outlive the state.
    AppState(SettingsStore &settings, std::unique_ptr<CompressionService> service,
             OpenPanel openPanel, QuotaTracker::Clock clock = &QuotaTracker::systemTime);

    QuotaTracker *quotaTracker() { return &m_quotaTracker; }
    CompressionQueue *compressionQueue() { return &m_compressionQueue; }

    bool showSettings() const { return m_showSettings; }
    void setShowSettings(bool show);

    /// For files added and tasks retried from now on. Not kept beyond the process.
    const CompressionOptions &options() const { return m_options; }
    void setOptions(const CompressionOptions &options);

    /// Also true if no key is needed. Never goes back to false while the process runs.
    bool isAPIKeyConfigured() const { return m_isAPIKeyConfigured; }
    /// Stores the key as it is. Whether the service accepts it is for the caller to know.
    Q_INVOKABLE void saveAPIKey(const QString &key);

    /// Lets the user pick files and adds those of a supported extension with the current options.
    Q_INVOKABLE void openFilePicker();

Q_SIGNALS:
    // Not emitted when an equal value is set.
    void showSettingsChanged();
    void optionsChanged();
    void isAPIKeyConfiguredChanged();

private:
    SettingsStore &m_settings;
    const OpenPanel m_openPanel;
    QuotaTracker m_quotaTracker;
    CompressionQueue m_compressionQueue; // after the tracker, which it refers to
    bool m_showSettings = false;
    CompressionOptions m_options;
    bool m_isAPIKeyConfigured = false;
};

} // namespace pixpress
