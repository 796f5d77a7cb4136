// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/quota.h"
#include "pipeline/settings.h"
#include "pipeline/settingsfile.h"

#include "pipeline/flushedsettings.h"
#include "pipeline/folder.h"
#include "pipeline/tree.h"
#include "support/child.h"
#include "support/faults/faults.h"

#include <QDateTime>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

#include <sys/file.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;

namespace {

const QString countEntry = u"pixpress_quota_count"_s;
constexpr auto good = R"({"pixpress_api_key": "secret", "pixpress_quota_count": 7})";

/// Starts a process that does the work and ends well when the work says so.
template <typename Work>
pid_t start(Work work)
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(120);
        _exit(work() ? 0 : 1);
    }
    return child;
}

bool endsWell(pid_t child)
{
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

/// The settings file of a user with a key, when it cannot be used as it should be.
class SettingsFaultsTest : public QObject, private FolderOfTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void missingPlace_isMade();
    void emptyFile_isNoComplaint();
    void damagedFile_isPutAside_data();
    void damagedFile_isPutAside();
    void damagedAgain_isKeptBesideTheFirst();
    void damagedFileThatCannotBePutAside_isKept();
    void tooLargeFile_isKept();
    void unreadableFile_isKept();
    void fileOfAnother_isKept();
    void readOnlyFolder_keepsTheFile();
    void somethingElseInItsPlace_isKept_data();
    void somethingElseInItsPlace_isKept();
    void danglingLink_isFollowed();
    void complaint_isNotRepeated();
    void failedCall_keepsTheKey_data();
    void failedCall_keepsTheKey();
    void copiesThatWriteAtOnce_loseNothing();
    void keyOfAnotherCopy_isNotUndone();
    void killedCopy_leavesTheKey();
    void copyThatKeepsWriting_isWaitedForInVain();
    void change_waitsForOtherCopiesOnAThreadOfItsOwn();
    void change_isStoredBeforeTheSettingsEnd();
    void quota_isStoredInOneTransaction();

private:
    QString filePath() const { return path(u"Pixpress/Pixpress.json"_s); }
    QByteArray stored() const { return content(u"Pixpress/Pixpress.json"_s); }
    QJsonObject entries() const { return settingsfile::read(filePath()).value_or(QJsonObject()); }
    void putFile(const QByteArray &content) const { put(u"Pixpress/Pixpress.json"_s, content); }
    void expect(const QString &what, const QString &why) const
    {
        const QString text = u"The settings %1 \"%2\"%3 %4"_s.arg(
            what, filePath(), what == u"in"_s ? u""_s : u":"_s, why);
        QTest::ignoreMessage(QtWarningMsg, qPrintable(text));
    }
};

void SettingsFaultsTest::initTestCase()
{
#ifdef __SANITIZE_THREAD__
    QSKIP("The thread sanitizer lets a process that was forked start no threads.");
#endif
}

void SettingsFaultsTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>(quickTemplate());
    QVERIFY(m_folder->isValid());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder->path());
    QVERIFY(QDir(m_folder->path()).mkdir(u"Pixpress"_s));
    QTest::failOnWarning(QRegularExpression(u"."_s));
}

void SettingsFaultsTest::cleanup()
{
    faults::disarm();
    removeFolder();
}

void SettingsFaultsTest::missingPlace_isMade()
{
    QVERIFY(QDir(m_folder->path()).rmdir(u"Pixpress"_s));
    FlushedSettings settings;
    QVERIFY(!KeychainHelper::loadAPIKey(settings));
    KeychainHelper::saveAPIKey(settings, u"secret"_s);
    QVERIFY(stored().contains("secret"));
}

void SettingsFaultsTest::emptyFile_isNoComplaint()
{
    putFile("");
    FlushedSettings settings;
    const QuotaTracker tracker(settings);
    QCOMPARE(tracker.currentCount(), 0);
    QVERIFY(!KeychainHelper::loadAPIKey(settings));
    QVERIFY(entries().contains(countEntry));
}

void SettingsFaultsTest::damagedFile_isPutAside_data()
{
    QTest::addColumn<QByteArray>("damaged");
    QTest::newRow("comma too many") << QByteArray(R"({"pixpress_api_key": "secret",})");
    QTest::newRow("cut off") << QByteArray(good).chopped(3);
    QTest::newRow("text") << QByteArray("my key is secret");
    QTest::newRow("zeros") << QByteArray("secret") + QByteArray(4096, '\0');
    QTest::newRow("list") << QByteArray(R"(["secret"])");
}

void SettingsFaultsTest::damagedFile_isPutAside()
{
    QFETCH(const QByteArray, damaged);
    putFile(damaged);
    FlushedSettings settings;
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable(u"The settings in \"%1\" are damaged. What was there is in "
                                    "\"%1.unreadable\" now."_s.arg(filePath())));
    const QuotaTracker tracker(settings); // which writes
    QVERIFY(entries().contains(countEntry));
    QCOMPARE(content(u"Pixpress/Pixpress.json.unreadable"_s), damaged);
    QCOMPARE(statusOf(filePath() + u".unreadable"_s).st_mode & 07777, 0600U);
    KeychainHelper::saveAPIKey(settings, u"new"_s);
    QCOMPARE(content(u"Pixpress/Pixpress.json.unreadable"_s), damaged);
}

void SettingsFaultsTest::damagedAgain_isKeptBesideTheFirst()
{
    const QByteArrayList damaged{"{\"pixpress_api_key\": \"secret\"", "second", "second", "third"};
    const QStringList asides{u".unreadable"_s, u".unreadable-2"_s, u".unreadable-2"_s,
                             u".unreadable-3"_s};
    for (qsizetype time = 0; time < damaged.size(); ++time) {
        putFile(damaged[time]);
        FlushedSettings settings;
        QTest::ignoreMessage(QtWarningMsg,
                             qPrintable(u"The settings in \"%1\" are damaged. What was there is in "
                                        "\"%1%2\" now."_s.arg(filePath(), asides[time])));
        settings.setValue(countEntry, 1);
        QCOMPARE(entries().value(countEntry), 1);
        for (qsizetype earlier = 0; earlier <= time; ++earlier)
            QCOMPARE(content(u"Pixpress/Pixpress.json"_s + asides[earlier]), damaged[earlier]);
    }
    QCOMPARE(QDir(path(u"Pixpress"_s)).entryList(QDir::Files).size(), 4);
}

void SettingsFaultsTest::damagedFileThatCannotBePutAside_isKept()
{
    putFile("my key is secret");
    QVERIFY(QDir(path(u"Pixpress"_s)).mkdir(u"Pixpress.json.unreadable"_s));
    FlushedSettings settings;
    expect(u"could not be stored in"_s,
           u"It holds something else, of which no copy could be made."_s);
    settings.setValue(countEntry, 3);
    QCOMPARE(stored(), "my key is secret");
    QCOMPARE(settings.value(countEntry).toInt(), 3);
}

void SettingsFaultsTest::tooLargeFile_isKept()
{
    const QByteArray large = QByteArray(good) + QByteArray(17 << 20, ' ');
    putFile(large);
    expect(u"in"_s, u"cannot be read: It is too large."_s);
    FlushedSettings settings;
    QVERIFY(!KeychainHelper::loadAPIKey(settings));
    expect(u"could not be stored in"_s, u"It is too large."_s);
    settings.setValue(countEntry, 3);
    QCOMPARE(settings.value(countEntry).toInt(), 3);
    QVERIFY(stored() == large);
}

void SettingsFaultsTest::unreadableFile_isKept()
{
    putFile(good);
    faults::arm({.call = faults::Call::read, .nth = 1, .error = EIO, .how = faults::How::always},
                qPrintable(m_folder->path()));
    expect(u"in"_s, u"cannot be read: Input/output error."_s);
    FlushedSettings settings;
    QVERIFY(!KeychainHelper::loadAPIKey(settings));
    expect(u"could not be stored in"_s, u"Input/output error."_s);
    const QuotaTracker tracker(settings); // which writes, and makes no second complaint
    QVERIFY(faults::disarm() > 0);
    QCOMPARE(stored(), good);
    QCOMPARE(KeychainHelper::loadAPIKey(settings), u"secret"_s);
    settings.setValue(u"later"_s, 1);
    QCOMPARE(entries().value(u"pixpress_api_key"_s), u"secret"_s);
    QCOMPARE(entries().value(countEntry), 0);
}

void SettingsFaultsTest::fileOfAnother_isKept()
{
    if (geteuid() != 0)
        QSKIP("Only root can make files of others.");
    putFile(good);
    QVERIFY(QFile::setPermissions(filePath(), ownerOnly));
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::Permissions(0x7777)));
    QVERIFY(QFile::setPermissions(path(u"Pixpress"_s), QFile::Permissions(0x7777)));
    const auto result = inChild([] {
        if (!dropPrivileges())
            return u"still root"_s;
        FlushedSettings settings;
        if (KeychainHelper::loadAPIKey(settings))
            return u"read"_s;
        KeychainHelper::saveAPIKey(settings, u"mine"_s);
        return KeychainHelper::loadAPIKey(settings).value_or(u"none"_s);
    });
    QCOMPARE(result.answer, u"mine"_s); // for this run
    QCOMPARE(stored(), good);
}

void SettingsFaultsTest::readOnlyFolder_keepsTheFile()
{
    if (geteuid() != 0)
        QSKIP("Only root can make a file that its user may not make writable.");
    putFile(good);
    openToOthers();
    QVERIFY(QFile::setPermissions(path(u"Pixpress"_s), QFile::Permissions(0x5555)));
    QVERIFY(QFile::setPermissions(filePath(), QFile::Permissions(0x4444)));
    const auto result = inChild([] {
        if (!dropPrivileges())
            return u"still root"_s;
        FlushedSettings settings;
        const QuotaTracker tracker(settings);
        KeychainHelper::saveAPIKey(settings, u"mine"_s);
        return KeychainHelper::loadAPIKey(settings).value_or(u"none"_s);
    });
    QVERIFY(
        QFile::setPermissions(path(u"Pixpress"_s), QFile::Permissions(0x7777))); // to be removed
    QCOMPARE(result.answer, u"mine"_s);
    QCOMPARE(stored(), good);
}

void SettingsFaultsTest::somethingElseInItsPlace_isKept_data()
{
    QTest::addColumn<QString>("kind");
    // No device of the machine: as root a fault would replace it.
    for (const char *kind : {"folder", "pipe", "socket", "link to a folder"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void SettingsFaultsTest::somethingElseInItsPlace_isKept()
{
    QFETCH(const QString, kind);
    const QString made = makeNoFile(kind, u"Pixpress/Pixpress.json"_s);
    QCOMPARE(made, filePath());
    const auto before = statusOf(filePath());
    const QString why = u"It is not a regular file."_s;
    expect(u"in"_s, u"cannot be read: "_s + why);
    FlushedSettings settings;
    QVERIFY(!KeychainHelper::loadAPIKey(settings));
    expect(u"could not be stored in"_s, why);
    KeychainHelper::saveAPIKey(settings, u"secret"_s);
    QCOMPARE(KeychainHelper::loadAPIKey(settings), u"secret"_s); // for this run
    QCOMPARE(statusOf(filePath()).st_ino, before.st_ino);
    QCOMPARE(statusOf(filePath()).st_mode, before.st_mode);
}

void SettingsFaultsTest::danglingLink_isFollowed()
{
    QVERIFY(QFile::link(path(u"real"_s), filePath()));
    FlushedSettings settings;
    KeychainHelper::saveAPIKey(settings, u"secret"_s);
    QCOMPARE(KeychainHelper::loadAPIKey(UserSettings()), u"secret"_s);
    QVERIFY((QFile::permissions(filePath()) & QFile::Permissions(0x77)) == 0);
}

void SettingsFaultsTest::complaint_isNotRepeated()
{
    putFile(good);
    faults::arm(
        {.call = faults::Call::write, .nth = 1, .error = ENOSPC, .how = faults::How::always},
        qPrintable(m_folder->path()));
    FlushedSettings settings;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"could not be stored"_s));
    for (int i = 0; i < 5; ++i)
        settings.setValue(countEntry, i); // another warning would fail
    QVERIFY(faults::disarm() > 0);
    QCOMPARE(stored(), good);
}

void SettingsFaultsTest::failedCall_keepsTheKey_data()
{
    QTest::addColumn<faults::Call>("call");
    QTest::addColumn<faults::How>("how");
    for (const auto call : faults::allCalls) {
        if (call == faults::Call::clone || call == faults::Call::link ||
            call == faults::Call::rename || call == faults::Call::unlink)
            continue; // which storing settings does without
        for (const auto how : faults::allWays)
            QTest::addRow("%s %s", faults::name(call), faults::name(how)) << call << how;
    }
}

void SettingsFaultsTest::failedCall_keepsTheKey()
{
    QFETCH(const faults::Call, call);
    QFETCH(const faults::How, how);
    int nth = 0;
    for (bool isMet = true; isMet;) {
        ++nth;
        putFile(good);
        const auto result = inChild([&] { // where warnings are no failures
            faults::arm({.call = call, .nth = nth, .error = EIO, .how = how},
                        qPrintable(m_folder->path()));
            FlushedSettings settings;
            settings.setValue(countEntry, 8);
            settings.setValue(countEntry, 9);
            const int count = settings.value(countEntry).toInt();
            const bool met = faults::disarm() > 0;
            const bool isWhole = entries().value(u"pixpress_api_key"_s) == u"secret"_s;
            settings.setValue(u"later"_s, 1);
            return u"%1 %2 %3 %4"_s.arg(met).arg(count).arg(isWhole).arg(
                QString::fromUtf8(QJsonDocument(entries()).toJson(QJsonDocument::Compact)));
        });
        isMet = result.answer.startsWith(u'1');
        QCOMPARE(result.answer.mid(2),
                 u"9 1 {\"later\":1,\"pixpress_api_key\":\"secret\",\"pixpress_quota_count\":9}"_s);
    }
    QVERIFY(nth > 1); // it has been met
}

void SettingsFaultsTest::copiesThatWriteAtOnce_loseNothing()
{
    static constexpr int rounds = 300;
    putFile(good);
    // Nothing while another one is writing.
    const auto look = [this] { return settingsfile::read(filePath(), {}); };
    const auto write = [look](const QString &entry) {
        FlushedSettings settings;
        int last = 0;
        for (int i = 1; i <= rounds || last < rounds; ++i) {
            if (const auto found = look(); found && found->value(entry).toInt() < last)
                return false; // undone by the other one
            // If it has its turn in time; else the next one stores it.
            settings.setValue(entry, std::min(i, rounds));
            if (const auto found = look())
                last = found->value(entry).toInt();
            if (KeychainHelper::loadAPIKey(settings) != u"secret"_s)
                return false;
        }
        return true;
    };
    const auto read = [look] {
        const UserSettings settings;
        for (bool isMore = true; isMore;) {
            const auto found = look();
            isMore = !found || found->value(u"a"_s).toInt() < rounds ||
                     found->value(u"b"_s).toInt() < rounds;
            if (KeychainHelper::loadAPIKey(settings) != u"secret"_s ||
                (found && found->value(u"pixpress_api_key"_s) != u"secret"_s))
                return false;
        }
        return true;
    };
    const QList<pid_t> copies{start([&] { return write(u"a"_s); }),
                              start([&] { return write(u"b"_s); }), start(read)};
    for (const pid_t copy : copies)
        QVERIFY(endsWell(copy));
    QCOMPARE(entries().value(u"a"_s), rounds);
    QCOMPARE(entries().value(u"b"_s), rounds);
    QCOMPARE(entries().value(countEntry), 7);
}

void SettingsFaultsTest::keyOfAnotherCopy_isNotUndone()
{
    putFile(good);
    FlushedSettings settings;
    QCOMPARE(KeychainHelper::loadAPIKey(settings), u"secret"_s);
    QVERIFY(endsWell(start([] {
        FlushedSettings other;
        KeychainHelper::saveAPIKey(other, u"terces"_s); // as long, within the same tick
        return true;
    })));
    settings.setValue(countEntry, 8);
    QCOMPARE(KeychainHelper::loadAPIKey(settings), u"terces"_s);
    QCOMPARE(entries().value(u"pixpress_api_key"_s), u"terces"_s);
}

void SettingsFaultsTest::killedCopy_leavesTheKey()
{
    putFile(good);
    for (int round = 0; round < 30; ++round) {
        const int last = entries().value(u"a"_s).toInt();
        const pid_t copy = start([last] {
            FlushedSettings settings;
            for (int i = last + 1;; ++i)
                settings.setValue(u"a"_s, i);
            return true;
        });
        QTRY_VERIFY_WITH_TIMEOUT(entries().value(u"a"_s).toInt() > last, 60'000);
        QCOMPARE(kill(copy, SIGKILL), 0);
        QVERIFY(!endsWell(copy));
        QCOMPARE(entries().value(u"pixpress_api_key"_s), u"secret"_s);
    }
    FlushedSettings settings;
    settings.setValue(countEntry, 9); // past the lock that the killed one held, perhaps
    QCOMPARE(entries().value(countEntry), 9);
}

void SettingsFaultsTest::copyThatKeepsWriting_isWaitedForInVain()
{
    putFile(good);
    FlushedSettings settings;
    QFile other(filePath());
    QVERIFY(other.open(QIODevice::ReadOnly));
    QCOMPARE(flock(other.handle(), LOCK_EX), 0);
    expect(u"could not be stored in"_s, u"Another program is writing it."_s);
    settings.setValue(countEntry, 9);
    QCOMPARE(settings.value(countEntry).toInt(), 9); // for this run
    QCOMPARE(stored(), good);
    QCOMPARE(KeychainHelper::loadAPIKey(settings), u"secret"_s); // as read before
    other.close();
    settings.setValue(u"later"_s, 1);
    QCOMPARE(entries().value(countEntry), 9);
    QCOMPARE(entries().value(u"pixpress_api_key"_s), u"secret"_s);
}

void SettingsFaultsTest::change_waitsForOtherCopiesOnAThreadOfItsOwn()
{
    putFile(good);
    UserSettings settings;
    QFile other(filePath());
    QVERIFY(other.open(QIODevice::ReadOnly));
    QCOMPARE(flock(other.handle(), LOCK_EX), 0);
    settings.setValue(countEntry, 8); // returns although nothing can be stored
    settings.setValue(countEntry, 9);
    QCOMPARE(settings.value(countEntry).toInt(), 9);
    QCOMPARE(stored(), good);
    other.close();
    settings.flush();
    QCOMPARE(entries().value(countEntry), 9);
}

void SettingsFaultsTest::change_isStoredBeforeTheSettingsEnd()
{
    putFile(good);
    {
        UserSettings settings;
        for (int i = 0; i < 50; ++i)
            settings.setValue(countEntry, i);
    }
    QCOMPARE(entries().value(countEntry), 49);
}

void SettingsFaultsTest::quota_isStoredInOneTransaction()
{
    putFile(good);
    UserSettings settings;
    QuotaTracker tracker(settings);
    settings.flush();
    tracker.setCurrentCount(12);
    static int g_syncs;
    g_syncs = 0;
    faults::observe([](faults::Call call, int) { g_syncs += call == faults::Call::fsync; },
                    qPrintable(m_folder->path()));
    tracker.persist();
    settings.flush();
    QCOMPARE(g_syncs, 3); // behind the old entries, in their place, and the end cut off
    tracker.persist();
    settings.flush();
    faults::observe(nullptr);
    QCOMPARE(g_syncs, 3); // Nothing has changed.
}

QTEST_GUILESS_MAIN(SettingsFaultsTest)
#include "tst_settingsfaults.moc"
