// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/appstate.h"

#include "support/scriptedserver.h"

#include <QSignalSpy>
#include <QTest>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

class AppStateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstStart_hasDefaults();
    void storedKey_isConfigured_data();
    void storedKey_isConfigured();
    void saveAPIKey_storesItUnchanged_data();
    void saveAPIKey_storesItUnchanged();
    void savingAnEmptyKey_keepsTheFlag();
    void queue_watchesTheQuota();
    void setters_signalRealChangesOnly();
    void openFilePicker_asksForWhatItNeeds();
    void openFilePicker_addsSupportedFiles();
    void cancelledPicker_addsNothing();
    void options_reachLaterFilesOnly();
    void restart_keepsKeyAndCountAndForgetsOptions();

private:
    // Nothing listens there: what is started fails.
    static std::unique_ptr<CompressionService> nowhere()
    {
        return std::make_unique<TinifyService>(
            ServiceConfig{.baseURL = QUrl(u"http://127.0.0.1:1"_s), .limits = {}});
    }
    const OpenPanel m_noPanel = [](const OpenPanelRequest &) { return QList<QUrl>(); };
};

void AppStateTest::firstStart_hasDefaults()
{
    TransientSettings settings;
    AppState state(settings, nowhere(), m_noPanel);
    QCOMPARE(state.showSettings(), false);
    QCOMPARE(state.isAPIKeyConfigured(), false);
    QVERIFY(state.options() == CompressionOptions());
    QVERIFY(state.compressionQueue()->tasks().isEmpty());
    QCOMPARE(state.compressionQueue()->activeTasks(), 0);
    QCOMPARE(state.quotaTracker()->currentCount(), 0);
    QCOMPARE(settings.value(u"pixpress_quota_count"_s).toLongLong(), 0);
    QVERIFY(settings.value(u"pixpress_quota_month"_s).isValid());
}

void AppStateTest::storedKey_isConfigured_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<bool>("configured");
    QTest::newRow("missing") << QVariant() << false;
    QTest::newRow("empty") << QVariant(u""_s) << false;
    QTest::newRow("blank") << QVariant(u" "_s) << true;
    QTest::newRow("key") << QVariant(u"abc"_s) << true;
}

void AppStateTest::storedKey_isConfigured()
{
    QFETCH(const QVariant, stored);
    QFETCH(const bool, configured);
    TransientSettings settings;
    if (stored.isValid())
        settings.setValue(u"pixpress_api_key"_s, stored);
    const AppState state(settings, nowhere(), m_noPanel);
    QCOMPARE(state.isAPIKeyConfigured(), configured);
}

void AppStateTest::saveAPIKey_storesItUnchanged_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("plain") << u"abc"_s;
    QTest::newRow("blanks around") << u"  abc\t"_s;
    QTest::newRow("other script") << u"ключ"_s;
}

void AppStateTest::saveAPIKey_storesItUnchanged()
{
    QFETCH(const QString, key);
    TransientSettings settings;
    AppState state(settings, nowhere(), m_noPanel);
    QSignalSpy changed(&state, &AppState::isAPIKeyConfiguredChanged);
    state.saveAPIKey(key);
    QCOMPARE(KeychainHelper::loadAPIKey(settings), key);
    QCOMPARE(state.isAPIKeyConfigured(), true);
    QCOMPARE(changed.size(), 1);
    state.saveAPIKey(u"another"_s);
    QCOMPARE(changed.size(), 1);
}

void AppStateTest::savingAnEmptyKey_keepsTheFlag()
{
    TransientSettings settings;
    AppState state(settings, nowhere(), m_noPanel);
    state.saveAPIKey(u"abc"_s);
    state.saveAPIKey(u""_s);
    QCOMPARE(state.isAPIKeyConfigured(), true);
    QVERIFY(!KeychainHelper::loadAPIKey(settings));
    state.compressionQueue()->addFiles({QUrl(u"file:///a.png"_s)}, {});
    QCOMPARE(state.compressionQueue()->tasks()[0].status,
             TaskStatus(status::Failed{u"No API key configured"_s}));
}

void AppStateTest::queue_watchesTheQuota()
{
    TransientSettings settings;
    AppState state(settings, nowhere(), m_noPanel);
    state.saveAPIKey(u"abc"_s);
    state.quotaTracker()->setCurrentCount(500);
    state.compressionQueue()->addFiles({QUrl(u"file:///a.png"_s)}, {});
    QCOMPARE(state.compressionQueue()->tasks()[0].status,
             TaskStatus(status::Failed{u"Monthly quota exhausted"_s}));
}

void AppStateTest::setters_signalRealChangesOnly()
{
    TransientSettings settings;
    AppState state(settings, nowhere(), m_noPanel);
    QSignalSpy shown(&state, &AppState::showSettingsChanged);
    QSignalSpy options(&state, &AppState::optionsChanged);
    state.setShowSettings(false);
    state.setOptions({});
    QCOMPARE(shown.size() + options.size(), 0);
    state.setShowSettings(true);
    state.setShowSettings(true);
    state.setOptions({.convertEnabled = true});
    state.setOptions({.convertEnabled = true});
    QCOMPARE(shown.size(), 1);
    QCOMPARE(options.size(), 1);
}

void AppStateTest::openFilePicker_asksForWhatItNeeds()
{
    TransientSettings settings;
    QList<OpenPanelRequest> asked;
    AppState state(settings, nowhere(), [&](const OpenPanelRequest &request) {
        asked.append(request);
        return QList<QUrl>();
    });
    state.openFilePicker();
    QCOMPARE(asked.size(), 1);
    QCOMPARE(asked[0].message, u"Select images to compress (PNG, JPEG, WebP, AVIF)"_s);
    QCOMPARE(asked[0].contentTypes, QStringList({u"image/png"_s, u"image/jpeg"_s}));
    QVERIFY(asked[0].allowsOtherFileTypes);
    QVERIFY(asked[0].canChooseFiles);
    QVERIFY(!asked[0].canChooseDirectories);
    QVERIFY(asked[0].allowsMultipleSelection);
}

void AppStateTest::openFilePicker_addsSupportedFiles()
{
    TransientSettings settings;
    AppState state(settings, nowhere(), [](const OpenPanelRequest &) {
        return QList<QUrl>{QUrl(u"file:///x/a.png"_s), QUrl(u"file:///x/notes.txt"_s)};
    });
    const CompressionOptions options{.preserveLocation = true};
    state.setOptions(options);
    state.openFilePicker();
    QCOMPARE(state.compressionQueue()->tasks().size(), 1);
    QCOMPARE(state.compressionQueue()->tasks()[0].fileName, u"a.png"_s);
    QVERIFY(state.compressionQueue()->tasks()[0].options == options);
}

void AppStateTest::cancelledPicker_addsNothing()
{
    TransientSettings settings; // without a key: each call of addFiles would mark a task as failed
    QList<QUrl> picked{QUrl(u"file:///a.png"_s), QUrl(u"file:///b.png"_s)};
    AppState state(settings, nowhere(), [&](const OpenPanelRequest &) { return picked; });
    state.openFilePicker();
    const auto before = state.compressionQueue()->tasks();
    picked.clear();
    state.openFilePicker();
    picked = {QUrl(u"file:///notes.txt"_s)};
    state.openFilePicker();
    QVERIFY(state.compressionQueue()->tasks() == before);
}

void AppStateTest::options_reachLaterFilesOnly()
{
    TransientSettings settings;
    AppState state(settings, nowhere(), m_noPanel);
    CompressionQueue &queue = *state.compressionQueue();
    queue.addFiles({QUrl(u"file:///a.png"_s)}, state.options());
    state.setOptions({.convertEnabled = true});
    queue.addFiles({QUrl(u"file:///b.png"_s)}, state.options());
    QCOMPARE(queue.tasks()[0].options.convertEnabled, false);
    QCOMPARE(queue.tasks()[1].options.convertEnabled, true);
    queue.retryTask(queue.tasks()[0].id, state.options());
    QCOMPARE(queue.tasks()[0].options.convertEnabled, true);
}

void AppStateTest::restart_keepsKeyAndCountAndForgetsOptions()
{
    TransientSettings settings;
    {
        AppState state(settings, nowhere(), m_noPanel);
        state.saveAPIKey(u"abc"_s);
        state.setOptions({.convertEnabled = true});
        state.quotaTracker()->setCurrentCount(376);
        state.quotaTracker()->persist();
    }
    AppState state(settings, nowhere(), m_noPanel);
    QCOMPARE(state.isAPIKeyConfigured(), true);
    QCOMPARE(state.quotaTracker()->currentCount(), 376);
    QVERIFY(state.options() == CompressionOptions());
    QVERIFY(state.compressionQueue()->tasks().isEmpty());
}

QTEST_GUILESS_MAIN(AppStateTest)
#include "tst_appstate.moc"
