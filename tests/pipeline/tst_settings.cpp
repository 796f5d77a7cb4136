// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settings.h"

#include "pipeline/flushedsettings.h"
#include "support/faults/faults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>

using namespace pixpress;
using namespace pixpress::test;
using namespace Qt::StringLiterals;
namespace faults = pixpress::test::faults;

class SettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void missingEntry_isInvalid();
    void readingOnly_makesNoFile();
    void value_isOnTheDiskWhenFlushed();
    void value_isReplaced();
    void integers_keepTheirValue_data();
    void integers_keepTheirValue();
    void missingKey_isNone();
    void emptyKey_isNone();
    void key_isKeptUnchanged_data();
    void key_isKeptUnchanged();
    void key_survivesWritesOfOtherEntries();
    void applications_keepApart();
    void settingsOfOthers_areNotRead();
    void newFile_isForItsOwnerOnly();
    void existingFile_becomesOneForItsOwnerOnly();
    void existingFile_isClosedToOthersBeforeAnyWrite();
    void file_isNeverOpenToOthers_data();
    void file_isNeverOpenToOthers();
    void linkedFile_isClosedToOthersAndStaysLinked();
    void corruptFile_countsAsEmptyAndIsUsableAgain_data();
    void corruptFile_countsAsEmptyAndIsUsableAgain();
    void failedWrite_keepsTheStoredKey_data();
    void failedWrite_keepsTheStoredKey();
    void transientSettings_endWithTheirObject();

private:
    /// The file of an application's settings, whatever its format.
    QString path(const QString &application = u"Pixpress"_s) const
    {
        return m_folder->filePath(u"user/Pixpress/%1.%2"_s.arg(application, m_suffix));
    }
    /// An entry as a process would find it that starts now.
    QVariant onDisk(const QString &key);
    void storeKeyReadableByAll();
    void put(const QString &filePath, const QByteArray &content, QFile::Permissions permissions);

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_suffix;
    int m_copies = 0;
    mode_t m_umask = 0;
};

constexpr QFile::Permissions readableByAll =
    QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther;

static mode_t mode(const QString &filePath)
{
    struct stat status{};
    return stat(qPrintable(filePath), &status) == 0 ? status.st_mode & 07777 : 0;
}

static QByteArray content(const QString &filePath)
{
    QFile file(filePath);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void SettingsTest::initTestCase()
{
    init();
    FlushedSettings().setValue(u"a"_s, 1);
    cleanup();
    const QDir folder(m_folder->filePath(u"user/Pixpress"_s));
    const QFileInfoList files = folder.entryInfoList(QDir::Files | QDir::Hidden);
    QCOMPARE(files.size(), 1);
    QCOMPARE(files.first().completeBaseName(), u"Pixpress"_s);
    m_suffix = files.first().suffix();
}

void SettingsTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    for (const QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat}) {
        QSettings::setPath(format, QSettings::UserScope, m_folder->filePath(u"user"_s));
        QSettings::setPath(format, QSettings::SystemScope, m_folder->filePath(u"system"_s));
    }
    m_umask = umask(0); // so that permissions are those that the program asks for
}

void SettingsTest::cleanup()
{
    umask(m_umask);
    faults::disarm();
    faults::observe(nullptr);
}

QVariant SettingsTest::onDisk(const QString &key)
{
    // Under another name, since QSettings remembers the files that it has read.
    const QString name = u"Copy %1"_s.arg(++m_copies);
    if (!QFile::copy(path(), path(name)))
        return u"no copy"_s;
    const QVariant value = UserSettings(name).value(key);
    QFile::remove(path(name));
    return value;
}

void SettingsTest::put(const QString &filePath, const QByteArray &content,
                       QFile::Permissions permissions)
{
    QVERIFY(QDir().mkpath(QFileInfo(filePath).absolutePath()));
    QFile file(filePath);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
    QVERIFY(file.setPermissions(permissions));
}

void SettingsTest::storeKeyReadableByAll()
{
    FlushedSettings settings;
    KeychainHelper::saveAPIKey(settings, u"secret"_s);
    QVERIFY(QFile::setPermissions(path(), readableByAll));
}

void SettingsTest::missingEntry_isInvalid()
{
    QVERIFY(!UserSettings().value(u"pixpress_api_key"_s).isValid());
    QVERIFY(!TransientSettings().value(u"pixpress_api_key"_s).isValid());
}

void SettingsTest::readingOnly_makesNoFile()
{
    QVERIFY(!KeychainHelper::loadAPIKey(UserSettings()));
    QVERIFY(!QFile::exists(path()));
}

void SettingsTest::value_isOnTheDiskWhenFlushed()
{
    FlushedSettings settings;
    settings.setValue(u"pixpress_quota_month"_s, u"2026-11"_s);
    QVERIFY(content(path()).contains("2026-11"));
    QCOMPARE(onDisk(u"pixpress_quota_month"_s).toString(), u"2026-11"_s);
    settings.setValue(u"pixpress_quota_count"_s, qint64(480));
    QCOMPARE(onDisk(u"pixpress_quota_month"_s).toString(), u"2026-11"_s);
    QCOMPARE(onDisk(u"pixpress_quota_count"_s).toLongLong(), 480);
    QCOMPARE(settings.value(u"pixpress_quota_count"_s).toLongLong(), 480);
    QCOMPARE(UserSettings().value(u"pixpress_quota_count"_s).toLongLong(), 480);
}

void SettingsTest::value_isReplaced()
{
    FlushedSettings settings;
    KeychainHelper::saveAPIKey(settings, u"first"_s);
    KeychainHelper::saveAPIKey(settings, u"second"_s);
    QCOMPARE(KeychainHelper::loadAPIKey(settings), u"second"_s);
    QCOMPARE(KeychainHelper::loadAPIKey(UserSettings()), u"second"_s);
    QVERIFY(!content(path()).contains("first"));
}

void SettingsTest::integers_keepTheirValue_data()
{
    QTest::addColumn<qint64>("value");
    for (const qint64 value :
         {0LL, 1LL, -1LL, 500LL, 5'000'000'000LL, std::numeric_limits<long long>::max(),
          std::numeric_limits<long long>::min()})
        QTest::addRow("%lld", static_cast<long long>(value)) << value;
}

void SettingsTest::integers_keepTheirValue()
{
    QFETCH(const qint64, value);
    FlushedSettings settings;
    settings.setValue(u"count"_s, value);
    bool ok = false;
    QCOMPARE(onDisk(u"count"_s).toLongLong(&ok), value);
    QVERIFY(ok);
}

void SettingsTest::missingKey_isNone()
{
    QVERIFY(!KeychainHelper::loadAPIKey(UserSettings()));
    QVERIFY(!KeychainHelper::loadAPIKey(TransientSettings()));
}

void SettingsTest::emptyKey_isNone()
{
    FlushedSettings settings;
    KeychainHelper::saveAPIKey(settings, u"abc"_s);
    KeychainHelper::saveAPIKey(settings, u""_s);
    QVERIFY(!KeychainHelper::loadAPIKey(settings));
    QVERIFY(!KeychainHelper::loadAPIKey(UserSettings()));
    QVERIFY(UserSettings().value(u"pixpress_api_key"_s).isValid());

    KeychainHelper::saveAPIKey(settings, QString());
    QVERIFY(!KeychainHelper::loadAPIKey(UserSettings()));
}

void SettingsTest::key_isKeptUnchanged_data()
{
    QTest::addColumn<QString>("key");
    const auto row = [](const char *name, const QString &key) { QTest::newRow(name) << key; };
    row("usual", u"KvPR7wnT2mJXkQ4tYbLhC9sD1fGzNx80"_s);
    row("one letter", u"x"_s);
    row("blank alone", u" "_s);
    row("blanks at the ends", u"  abc\t "_s);
    row("blank inside", u"a b"_s);
    row("line breaks", u"a\nb\r\nc\n"_s);
    row("commas", u"a, b,c,"_s);
    row("comma alone", u","_s);
    row("at sign", u"@"_s);
    row("at sign first", u"@key"_s);
    row("looks like a stored type", u"@ByteArray(abc)"_s);
    row("looks like nothing stored", u"@Invalid()"_s);
    row("quotes and backslashes", u"\"a\\b\\x41'\\\""_s);
    row("equals, hash, semicolon, percent", u"a=b#c;d%20%1[e]"_s);
    row("letters of many scripts", u"Größe ключ 鍵 🔑 مفتاح"_s);
    row("combining letters", u"e\u0301 é"_s);
    row("zero character", u"a"_s + QChar(u'\0') + u"b"_s);
    row("number", u"0017"_s);
    row("word", u"true"_s);
    row("long", QString(100'000, u'k'));
}

void SettingsTest::key_isKeptUnchanged()
{
    QFETCH(const QString, key);
    FlushedSettings settings;
    KeychainHelper::saveAPIKey(settings, key);
    QCOMPARE(KeychainHelper::loadAPIKey(settings), key);
    QCOMPARE(KeychainHelper::loadAPIKey(UserSettings()), key);
    QCOMPARE(onDisk(u"pixpress_api_key"_s).toString(), key);

    TransientSettings transient;
    KeychainHelper::saveAPIKey(transient, key);
    QCOMPARE(KeychainHelper::loadAPIKey(transient), key);
}

void SettingsTest::key_survivesWritesOfOtherEntries()
{
    const QString key = u" @,key "_s;
    FlushedSettings settings;
    KeychainHelper::saveAPIKey(settings, key);
    settings.setValue(u"pixpress_quota_count"_s, 3);
    FlushedSettings later;
    later.setValue(u"pixpress_quota_count"_s, 4);
    QCOMPARE(KeychainHelper::loadAPIKey(UserSettings()), key);
    QCOMPARE(settings.value(u"pixpress_quota_count"_s).toInt(), 4);
}

void SettingsTest::applications_keepApart()
{
    FlushedSettings online;
    FlushedSettings offline(u"Pixpress Offline"_s);
    KeychainHelper::saveAPIKey(online, u"real"_s);
    QVERIFY(!KeychainHelper::loadAPIKey(offline));
    KeychainHelper::saveAPIKey(offline, u"made up"_s);
    QCOMPARE(KeychainHelper::loadAPIKey(UserSettings()), u"real"_s);
    QCOMPARE(KeychainHelper::loadAPIKey(UserSettings(u"Pixpress Offline"_s)), u"made up"_s);
    QCOMPARE(QDir(m_folder->filePath(u"user/Pixpress"_s)).entryList(QDir::Files),
             (QStringList{QFileInfo(path(u"Pixpress Offline"_s)).fileName(),
                          QFileInfo(path()).fileName()}));
}

void SettingsTest::settingsOfOthers_areNotRead()
{
    FlushedSettings other(u"Other"_s);
    KeychainHelper::saveAPIKey(other, u"other"_s);
    const QByteArray stored = content(path(u"Other"_s));
    QVERIFY(stored.contains("other"));
    for (const QString &place :
         {u"user/Pixpress."_s, u"system/Pixpress."_s, u"system/Pixpress/Pixpress."_s})
        put(m_folder->filePath(place + m_suffix), stored, readableByAll);
    QVERIFY(!KeychainHelper::loadAPIKey(UserSettings()));
}

void SettingsTest::newFile_isForItsOwnerOnly()
{
    FlushedSettings settings;
    settings.setValue(u"pixpress_quota_count"_s, 1);
    QCOMPARE(mode(path()), 0600);
    KeychainHelper::saveAPIKey(settings, u"secret"_s);
    QCOMPARE(mode(path()), 0600);
}

void SettingsTest::existingFile_becomesOneForItsOwnerOnly()
{
    storeKeyReadableByAll();
    FlushedSettings settings;
    QCOMPARE(mode(path()), 0600);
    QCOMPARE(KeychainHelper::loadAPIKey(settings), u"secret"_s);
    settings.setValue(u"pixpress_quota_count"_s, 1);
    QCOMPARE(mode(path()), 0600);
    QCOMPARE(KeychainHelper::loadAPIKey(UserSettings()), u"secret"_s);
}

void SettingsTest::existingFile_isClosedToOthersBeforeAnyWrite()
{
    FlushedSettings settings;
    put(path(), "", readableByAll | QFile::WriteGroup | QFile::WriteOther); // made in between
    KeychainHelper::saveAPIKey(settings, u"secret"_s);
    QCOMPARE(mode(path()), 0600);
    QVERIFY(content(path()).contains("secret"));
}

void SettingsTest::file_isNeverOpenToOthers_data()
{
    QTest::addColumn<bool>("existing");
    QTest::newRow("new") << false;
    QTest::newRow("existing") << true;
}

namespace {

int g_looks = 0;
QStringList g_leaks;

/// At each call on a descriptor: is the file that it is made on open to anybody else?
void lookForLeaks(faults::Call call, int descriptor)
{
    struct stat status{};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return;
    const QString target = QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(descriptor));
    ++g_looks;
    if ((status.st_mode & 077) != 0)
        g_leaks << u"%1 on %2 with mode %3"_s.arg(QLatin1StringView(faults::name(call)), target)
                       .arg(status.st_mode & 07777, 0, 8);
}

} // namespace

void SettingsTest::file_isNeverOpenToOthers()
{
    QFETCH(const bool, existing);
    if (existing)
        storeKeyReadableByAll();
    g_looks = 0;
    g_leaks.clear();

    FlushedSettings settings;
    faults::observe(lookForLeaks, qPrintable(m_folder->path()));
    KeychainHelper::saveAPIKey(settings, u"new secret"_s);
    KeychainHelper::saveAPIKey(settings, u"newer secret"_s);
    faults::observe(nullptr);

    QCOMPARE(g_leaks, QStringList());
    QVERIFY(g_looks >= 4); // at the least a write and a close for each
}

void SettingsTest::linkedFile_isClosedToOthersAndStaysLinked()
{
    const QString target = m_folder->filePath(u"real"_s);
    storeKeyReadableByAll();
    QVERIFY(QFile::rename(path(), target) && QFile::link(target, path()));

    FlushedSettings settings;
    QCOMPARE(mode(target), 0600);
    settings.setValue(u"other"_s, u"value"_s);
    QVERIFY(QFileInfo(path()).isSymLink());
    QCOMPARE(mode(target), 0600);
    QVERIFY(content(target).contains("secret"));
    QVERIFY(content(target).contains("value"));
}

void SettingsTest::corruptFile_countsAsEmptyAndIsUsableAgain_data()
{
    QTest::addColumn<QByteArray>("garbage");
    QTest::newRow("text") << QByteArray("no settings at all\n\n]]][[[=;");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("bytes") << QByteArray("\xff\xfe\x80=\xc3\x28\n[\n\"");
    QTest::newRow("cut off") << QByteArray("[General]\npixpress_quota_mon");
    QTest::newRow("cut off JSON") << QByteArray("{\"pixpress_quota_month\": \"20");
}

void SettingsTest::corruptFile_countsAsEmptyAndIsUsableAgain()
{
    QFETCH(const QByteArray, garbage);
    put(path(), garbage, readableByAll);
    FlushedSettings settings;
    QVERIFY(!KeychainHelper::loadAPIKey(settings));
    KeychainHelper::saveAPIKey(settings, u"secret"_s);
    QCOMPARE(onDisk(u"pixpress_api_key"_s).toString(), u"secret"_s);
    QCOMPARE(mode(path()), 0600);
}

void SettingsTest::failedWrite_keepsTheStoredKey_data()
{
    QTest::addColumn<faults::How>("how");
    QTest::newRow("no room for a moment") << faults::How::once;
    QTest::newRow("no room at all") << faults::How::always;
    QTest::newRow("room for a part") << faults::How::halfway;
}

void SettingsTest::failedWrite_keepsTheStoredKey()
{
    QFETCH(const faults::How, how);
    FlushedSettings settings;
    KeychainHelper::saveAPIKey(settings, u"secret"_s);
    const QByteArray before = content(path());

    faults::arm({.call = faults::Call::write, .nth = 1, .error = ENOSPC, .how = how},
                qPrintable(m_folder->path()));
    settings.setValue(u"pixpress_quota_count"_s, 7);
    QVERIFY(faults::disarm() > 0);
    QCOMPARE(content(path()), before);
    QCOMPARE(mode(path()), 0600);
    QCOMPARE(settings.value(u"pixpress_quota_count"_s).toInt(), 7); // for this run at least
    QCOMPARE(KeychainHelper::loadAPIKey(settings), u"secret"_s);

    // With room again the next change brings everything.
    settings.setValue(u"pixpress_quota_month"_s, u"2026-11"_s);
    QCOMPARE(onDisk(u"pixpress_quota_count"_s).toInt(), 7);
    QCOMPARE(onDisk(u"pixpress_api_key"_s).toString(), u"secret"_s);
}

void SettingsTest::transientSettings_endWithTheirObject()
{
    {
        TransientSettings settings;
        settings.setValue(u"a"_s, qint64(1));
        settings.setValue(u"a"_s, qint64(2));
        QCOMPARE(settings.value(u"a"_s), QVariant(qint64(2)));
        QVERIFY(!settings.value(u"b"_s).isValid());
    }
    QVERIFY(!TransientSettings().value(u"a"_s).isValid());
    QVERIFY(QDir(m_folder->path()).isEmpty());
}

QTEST_GUILESS_MAIN(SettingsTest)
#include "tst_settings.moc"
