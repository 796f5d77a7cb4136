// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/appstate.h"

using namespace Qt::StringLiterals;

namespace pixpress {

AppState::AppState(SettingsStore &settings, std::unique_ptr<CompressionService> service,
                   OpenPanel openPanel, QuotaTracker::Clock clock)
    : m_settings(settings),
      m_openPanel(std::move(openPanel)),
      m_quotaTracker(settings, std::move(clock)),
      m_compressionQueue(settings, std::move(service)),
      m_isAPIKeyConfigured(!m_compressionQueue.needsAPIKey() ||
                           KeychainHelper::loadAPIKey(settings).has_value())
{
    if (m_compressionQueue.needsAPIKey())
        m_compressionQueue.setQuotaTracker(&m_quotaTracker);
}

void AppState::setShowSettings(bool show)
{
    if (m_showSettings == show)
        return;
    m_showSettings = show;
    Q_EMIT showSettingsChanged();
}

void AppState::setOptions(const CompressionOptions &options)
{
    if (m_options == options)
        return;
    m_options = options;
    Q_EMIT optionsChanged();
}

void AppState::saveAPIKey(const QString &key)
{
    KeychainHelper::saveAPIKey(m_settings, key);
    if (m_isAPIKeyConfigured)
        return;
    m_isAPIKeyConfigured = true;
    Q_EMIT isAPIKeyConfiguredChanged();
}

void AppState::openFilePicker()
{
    // Only PNG and JPEG are offered, and the other formats reached by the panel's choice of all
    // files: so the panel opens on what nearly everybody looks for.
    QList<QUrl> urls =
        m_openPanel({.message = tr("Select images to compress (PNG, JPEG, WebP, AVIF)"),
                     .contentTypes = {rawValue(ImageFormat::png), rawValue(ImageFormat::jpeg)},
                     .allowsOtherFileTypes = true,
                     .canChooseFiles = true,
                     .canChooseDirectories = false,
                     .allowsMultipleSelection = true});
    urls.removeIf([](const QUrl &url) { return !isSupported(url.fileName()); });
    if (!urls.isEmpty())
        m_compressionQueue.addFiles(urls, m_options);
}

} // namespace pixpress
