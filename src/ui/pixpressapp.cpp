// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/pixpressapp.h"

#include "ui/accessibility.h"
#include "ui/droppedfiles.h"
#include "ui/engine.h"
#include "ui/intake.h"
#include "worker/localservice.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace pixpress {

namespace {

/// By then the window shows, also on a slow machine.
constexpr auto readAheadDelay = 300ms;

std::unique_ptr<CompressionService> compressionService(const std::optional<ServiceConfig> &remote,
                                                       Worker &worker)
{
    if (remote)
        return std::make_unique<TinifyService>(*remote);
    return std::make_unique<LocalService>(worker);
}

} // namespace

PixpressApp::PixpressApp(SettingsStore &settings, const std::optional<ServiceConfig> &service)
    : PixpressApp(settings, service, Seams())
{
}

PixpressApp::PixpressApp(SettingsStore &settings, const std::optional<ServiceConfig> &service,
                         Seams seams)
    : m_settings(settings),
      m_reveal(std::move(seams.reveal)),
      m_service(service),
      m_appState(settings, compressionService(service, m_worker),
                 filePanel(std::move(seams.openPanel)), std::move(seams.clock)),
      m_tasks(*m_appState.compressionQueue()),
      m_options(m_appState, folderPanel(std::move(seams.folderChooser)))
{
    connect(&m_appState, &AppState::isAPIKeyConfiguredChanged, this, &PixpressApp::needsKeyChanged);
}

PixpressApp::~PixpressApp() = default;

bool PixpressApp::show(QQmlApplicationEngine &engine)
{
    engine.setInitialProperties({{u"app"_s, QVariant::fromValue(this)}});
    engine.load(viewURL(u"PixpressWindow"_s));
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (!window)
        return false;
    m_panels.setWindow(&engine, window);
    QTimer::singleShot(readAheadDelay, &engine, [this, &engine] {
        readAhead(engine, u"TaskListView"_s);
        readAhead(engine, u"SettingsSheet"_s);
        m_worker.start();
    });
    // The focus is where it was, for which Qt has no word to screen readers.
    connect(window, &QWindow::activeChanged, window, [window] {
        if (window->isActive())
            Accessibility::moveTo(window->activeFocusItem());
    });
    // Once the window exists: also when it was started from a terminal it shall be in front.
    QMetaObject::invokeMethod(
        window,
        [window] {
            window->raise();
            window->requestActivate();
        },
        Qt::QueuedConnection);
    return true;
}

template <typename Panel>
auto PixpressApp::pickAlone(const Panel &panel) -> decltype(panel())
{
    if (m_isPanelOpen)
        return {};
    setPanelOpen(true);
    auto picked = panel();
    setPanelOpen(false);
    return picked;
}

void PixpressApp::setPanelOpen(bool open)
{
    m_isPanelOpen = open;
    Q_EMIT isPanelOpenChanged();
}

OpenPanel PixpressApp::filePanel(OpenPanel own)
{
    if (!own)
        own = [this](const OpenPanelRequest &request) { return m_panels.pickFiles(request); };
    return [this, own = std::move(own)](const OpenPanelRequest &request) {
        return pickAlone([&] { return own(request); });
    };
}

OptionsEditor::FolderChooser PixpressApp::folderPanel(OptionsEditor::FolderChooser own)
{
    if (!own)
        own = [this] {
            return m_panels.pickFolder(m_appState.options().customFolderURL.value_or(QUrl()));
        };
    return [this, own = std::move(own)] { return pickAlone(own); };
}

void PixpressApp::openFiles(const QList<QUrl> &files)
{
    if (!needsKey())
        return handleDrop(files);
    connect(
        this, &PixpressApp::needsKeyChanged, this, [this, files] { handleDrop(files); },
        Qt::SingleShotConnection);
}

void PixpressApp::openFilePicker()
{
    if (m_isPanelOpen)
        return; // or it would open as soon as that one closes
    QMetaObject::invokeMethod(&m_appState, &AppState::openFilePicker, Qt::QueuedConnection);
}

bool PixpressApp::acceptsDrag(const QList<QUrl> &dragged) const
{
    return !m_isPanelOpen && hasFile(dragged);
}

void PixpressApp::handleDrop(const QList<QUrl> &dropped)
{
    pixpress::handleDrop(m_appState, dropped);
}

void PixpressApp::retry(int row)
{
    m_tasks.retry(row, m_appState.options());
}

void PixpressApp::reveal(const QUrl &file)
{
    m_reveal(file);
}

void PixpressApp::clearCompleted()
{
    m_appState.compressionQueue()->clearCompleted();
}

void PixpressApp::clearAll()
{
    m_appState.compressionQueue()->clearAll();
}

QString PixpressApp::storedKey() const
{
    return KeychainHelper::loadAPIKey(m_settings).value_or(QString());
}

void PixpressApp::saveAPIKey(const QString &key)
{
    m_savedWish = ++m_lastWish;
    m_appState.saveAPIKey(key);
}

QCoro::Task<TinifyService::Result<bool>> PixpressApp::validateAPIKey(QString key)
{
    const int wish = ++m_lastWish;
    const auto check = m_checks.emplace(m_checks.end(), m_service.value());
    const auto isValid = co_await check->validateAPIKey(key);
    // Not here, where its own answer is being delivered. When the application is ending this is
    // never run, and must not be: the list is going.
    QMetaObject::invokeMethod(this, [this, check] { m_checks.erase(check); }, Qt::QueuedConnection);
    // The key that was asked about: what stands in the field may be another by now, and then
    // nobody knows whether that one is good.
    if (isValid.value_or(false) && wish > m_savedWish) {
        m_savedWish = wish;
        m_appState.saveAPIKey(key);
    }
    co_return isValid;
}

} // namespace pixpress
