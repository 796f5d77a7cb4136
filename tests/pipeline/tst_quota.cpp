// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/quota.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

using namespace pixpress;
using namespace Qt::StringLiterals;

namespace {

/// Keeps what was written as lines, one per change, in order.
class RecordingSettings : public TransientSettings
{
public:
    void setValues(const QVariantMap &values) override
    {
        TransientSettings::setValues(values);
        QStringList change;
        for (const auto &[key, value] : values.asKeyValueRange())
            change << u"%1=%2 (%3)"_s.arg(key, value.toString(),
                                          value.userType() == QMetaType::QString ? u"string"_s
                                                                                 : u"integer"_s);
        writes << change.join(u", "_s);
    }
    QStringList takeWrites() { return std::exchange(writes, {}); }

    QStringList writes;
};

QStringList bothEntries(qint64 count, const QString &month)
{
    return {u"pixpress_quota_count=%1 (integer), pixpress_quota_month=%2 (string)"_s.arg(count).arg(
        month)};
}

/// Settings that hold a count of a month.
void store(RecordingSettings &settings, const QVariant &month, const QVariant &count)
{
    settings.setValue(u"pixpress_quota_month"_s, month);
    settings.setValue(u"pixpress_quota_count"_s, count);
    settings.writes.clear();
}

} // namespace

class QuotaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_now = QDateTime({2026, 11, 15}, {12, 0}); }

    void firstStart_writesZeroOfThisMonth();
    void startInTheStoredMonth_takesUpTheCount_data();
    void startInTheStoredMonth_takesUpTheCount();
    void startInAnotherMonth_writesZeroOfThisMonth_data();
    void startInAnotherMonth_writesZeroOfThisMonth();
    void monthKey_isThatOfTheLocalDate_data();
    void monthKey_isThatOfTheLocalDate();
    void defaultClock_isTheUsersTime();
    void monthlyLimit_is500();
    void lowerReportedCount_replacesTheCount();
    void settingTheSameValue_isNotSignalled();
    void setting_storesNothing();
    void rolloverInTheSameMonth_changesNothing();
    void rolloverInANewMonth_startsAtZeroButStoresNothing();
    void rolloverAtZero_signalsTheMonthOnly();
    void rolloverWhenTheClockWentBack_startsAtZero();
    void answerInANewMonth_countsFromZero();
    void persist_writesCountThenMonth();
    void reset_storesZeroOfToday_data();
    void reset_storesZeroOfToday();
    void nextStart_findsWhatWasPersisted();
    void properties_followTheTracker();

private:
    QuotaTracker::Clock clock()
    {
        return [this] { return m_now; };
    }

    QDateTime m_now;
};

void QuotaTest::firstStart_writesZeroOfThisMonth()
{
    RecordingSettings settings;
    const QuotaTracker tracker(settings, clock());
    QCOMPARE(tracker.currentCount(), 0);
    QCOMPARE(tracker.monthYear(), u"2026-11"_s);
    QCOMPARE(settings.writes, bothEntries(0, u"2026-11"_s));
}

void QuotaTest::startInTheStoredMonth_takesUpTheCount_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<qint64>("count");
    QTest::newRow("integer") << QVariant(480) << qint64(480);
    QTest::newRow("as text, as files hold it") << QVariant(u"480"_s) << qint64(480);
    QTest::newRow("zero") << QVariant(0) << qint64(0);
    QTest::newRow("beyond the limit") << QVariant(1234) << qint64(1234);
    QTest::newRow("negative") << QVariant(-3) << qint64(-3);
    QTest::newRow("beyond 32 bits") << QVariant(qint64(5'000'000'000)) << qint64(5'000'000'000);
    QTest::newRow("missing") << QVariant() << qint64(0);
    QTest::newRow("no number") << QVariant(u"many"_s) << qint64(0);
    QTest::newRow("empty") << QVariant(u""_s) << qint64(0);
    QTest::newRow("beyond 64 bits") << QVariant(u"9223372036854775808"_s) << qint64(0);
}

void QuotaTest::startInTheStoredMonth_takesUpTheCount()
{
    QFETCH(const QVariant, stored);
    QFETCH(const qint64, count);
    RecordingSettings settings;
    store(settings, u"2026-11"_s, stored);
    const QuotaTracker tracker(settings, clock());
    QCOMPARE(tracker.currentCount(), count);
    QCOMPARE(tracker.monthYear(), u"2026-11"_s);
    QCOMPARE(settings.writes, QStringList());
}

void QuotaTest::startInAnotherMonth_writesZeroOfThisMonth_data()
{
    QTest::addColumn<QVariant>("month");
    QTest::newRow("month before") << QVariant(u"2026-10"_s);
    QTest::newRow("month after") << QVariant(u"2026-12"_s);
    QTest::newRow("same month of last year") << QVariant(u"2025-11"_s);
    QTest::newRow("empty") << QVariant(u""_s);
    QTest::newRow("missing") << QVariant();
    QTest::newRow("another form") << QVariant(u"11/2026"_s);
    QTest::newRow("with day") << QVariant(u"2026-11-01"_s);
    QTest::newRow("blank at the end") << QVariant(u"2026-11 "_s);
    QTest::newRow("number") << QVariant(202611);
}

void QuotaTest::startInAnotherMonth_writesZeroOfThisMonth()
{
    QFETCH(const QVariant, month);
    RecordingSettings settings;
    store(settings, month, 499);
    const QuotaTracker tracker(settings, clock());
    QCOMPARE(tracker.currentCount(), 0);
    QCOMPARE(tracker.monthYear(), u"2026-11"_s);
    QCOMPARE(settings.writes, bothEntries(0, u"2026-11"_s));
}

void QuotaTest::monthKey_isThatOfTheLocalDate_data()
{
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QString>("month");
    const QTimeZone kiritimati(14 * 3600);
    QTest::newRow("last moment of a year")
        << QDateTime({2026, 12, 31}, {23, 59, 59, 999}) << u"2026-12"_s;
    QTest::newRow("first moment of a year") << QDateTime({2027, 1, 1}, {0, 0}) << u"2027-01"_s;
    QTest::newRow("month of one digit") << QDateTime({2026, 9, 30}, {1, 2}) << u"2026-09"_s;
    QTest::newRow("leap day") << QDateTime({2028, 2, 29}, {1, 2}) << u"2028-02"_s;
    QTest::newRow("ahead of Greenwich")
        << QDateTime({2026, 11, 1}, {0, 30}, kiritimati) << u"2026-11"_s;
}

void QuotaTest::monthKey_isThatOfTheLocalDate()
{
    QFETCH(const QDateTime, now);
    QFETCH(const QString, month);
    m_now = now;
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt)); // has digits of its own
    TransientSettings settings;
    const QString key = QuotaTracker(settings, clock()).monthYear();
    QLocale::setDefault(before);
    QCOMPARE(key, month);
}

void QuotaTest::defaultClock_isTheUsersTime()
{
    TransientSettings settings;
    const QString before = QDate::currentDate().toString(u"yyyy-MM"_s);
    const QString month = QuotaTracker(settings).monthYear();
    const QString after = QDate::currentDate().toString(u"yyyy-MM"_s);
    QVERIFY2(month == before || month == after, qPrintable(month));
}

void QuotaTest::monthlyLimit_is500()
{
    TransientSettings settings;
    QCOMPARE(QuotaTracker(settings).monthlyLimit, 500);
}

void QuotaTest::lowerReportedCount_replacesTheCount()
{
    RecordingSettings settings;
    store(settings, u"2026-11"_s, 480);
    QuotaTracker tracker(settings, clock());
    QSignalSpy counts(&tracker, &QuotaTracker::currentCountChanged);

    tracker.checkMonthRollover();
    tracker.setCurrentCount(12);
    tracker.persist();
    QCOMPARE(tracker.currentCount(), 12);
    QCOMPARE(counts.size(), 1);
    QCOMPARE(settings.writes, bothEntries(12, u"2026-11"_s));
}

void QuotaTest::settingTheSameValue_isNotSignalled()
{
    RecordingSettings settings;
    store(settings, u"2026-11"_s, 480);
    QuotaTracker tracker(settings, clock());
    QSignalSpy counts(&tracker, &QuotaTracker::currentCountChanged);
    QSignalSpy months(&tracker, &QuotaTracker::monthYearChanged);
    tracker.setCurrentCount(480);
    tracker.setMonthYear(u"2026-11"_s);
    QCOMPARE(counts.size() + months.size(), 0);
    tracker.setCurrentCount(481);
    tracker.setMonthYear(u"2026-12"_s);
    QCOMPARE(counts.size(), 1);
    QCOMPARE(months.size(), 1);
}

void QuotaTest::setting_storesNothing()
{
    RecordingSettings settings;
    QuotaTracker tracker(settings, clock());
    settings.writes.clear();
    tracker.setCurrentCount(5);
    tracker.setMonthYear(u"2020-01"_s);
    QCOMPARE(settings.writes, QStringList());
    QCOMPARE(tracker.currentCount(), 5);
    QCOMPARE(tracker.monthYear(), u"2020-01"_s);
}

void QuotaTest::rolloverInTheSameMonth_changesNothing()
{
    RecordingSettings settings;
    store(settings, u"2026-11"_s, 480);
    QuotaTracker tracker(settings, clock());
    QSignalSpy counts(&tracker, &QuotaTracker::currentCountChanged);
    QSignalSpy months(&tracker, &QuotaTracker::monthYearChanged);
    m_now = QDateTime({2026, 11, 30}, {23, 59, 59, 999});
    tracker.checkMonthRollover();
    QCOMPARE(tracker.currentCount(), 480);
    QCOMPARE(counts.size() + months.size(), 0);
    QCOMPARE(settings.writes, QStringList());
}

void QuotaTest::rolloverInANewMonth_startsAtZeroButStoresNothing()
{
    RecordingSettings settings;
    store(settings, u"2026-11"_s, 480);
    QuotaTracker tracker(settings, clock());
    QStringList heard;
    connect(&tracker, &QuotaTracker::currentCountChanged, this, [&] {
        heard << u"count %1 in %2"_s.arg(tracker.currentCount()).arg(tracker.monthYear());
    });
    connect(&tracker, &QuotaTracker::monthYearChanged, this, [&] {
        heard << u"month %2 with %1"_s.arg(tracker.currentCount()).arg(tracker.monthYear());
    });
    m_now = QDateTime({2026, 12, 1}, {0, 0});
    tracker.checkMonthRollover();
    QCOMPARE(heard, (QStringList{u"count 0 in 2026-11"_s, u"month 2026-12 with 0"_s}));
    QCOMPARE(settings.writes, QStringList());

    tracker.checkMonthRollover();
    QCOMPARE(heard.size(), 2);
}

void QuotaTest::rolloverAtZero_signalsTheMonthOnly()
{
    RecordingSettings settings;
    QuotaTracker tracker(settings, clock());
    QSignalSpy counts(&tracker, &QuotaTracker::currentCountChanged);
    QSignalSpy months(&tracker, &QuotaTracker::monthYearChanged);
    m_now = m_now.addMonths(1);
    tracker.checkMonthRollover();
    QCOMPARE(counts.size(), 0);
    QCOMPARE(months.size(), 1);
    QCOMPARE(tracker.monthYear(), u"2026-12"_s);
}

void QuotaTest::rolloverWhenTheClockWentBack_startsAtZero()
{
    RecordingSettings settings;
    store(settings, u"2026-11"_s, 480);
    QuotaTracker tracker(settings, clock());
    m_now = m_now.addYears(-1);
    tracker.checkMonthRollover();
    QCOMPARE(tracker.currentCount(), 0);
    QCOMPARE(tracker.monthYear(), u"2025-11"_s);
}

void QuotaTest::answerInANewMonth_countsFromZero()
{
    RecordingSettings settings;
    store(settings, u"2026-11"_s, 499);
    QuotaTracker tracker(settings, clock());
    QList<qint64> counts;
    connect(&tracker, &QuotaTracker::currentCountChanged, this,
            [&] { counts << tracker.currentCount(); });
    m_now = m_now.addMonths(1);
    tracker.checkMonthRollover();
    tracker.setCurrentCount(1);
    tracker.persist();
    QCOMPARE(counts, (QList<qint64>{0, 1}));
    QCOMPARE(settings.writes, bothEntries(1, u"2026-12"_s));
}

void QuotaTest::persist_writesCountThenMonth()
{
    RecordingSettings settings;
    QuotaTracker tracker(settings, clock());
    settings.writes.clear();
    tracker.persist();
    QCOMPARE(settings.takeWrites(), bothEntries(0, u"2026-11"_s));
    tracker.setCurrentCount(5'000'000'000);
    tracker.setMonthYear(u"2031-01"_s);
    tracker.persist();
    QCOMPARE(settings.takeWrites(), bothEntries(5'000'000'000, u"2031-01"_s));
}

void QuotaTest::reset_storesZeroOfToday_data()
{
    QTest::addColumn<qint64>("count");
    QTest::addColumn<int>("monthsLater");
    QTest::newRow("same month") << qint64(500) << 0;
    QTest::newRow("new month") << qint64(500) << 2;
    QTest::newRow("at zero") << qint64(0) << 0;
}

void QuotaTest::reset_storesZeroOfToday()
{
    QFETCH(const qint64, count);
    QFETCH(const int, monthsLater);
    RecordingSettings settings;
    store(settings, u"2026-11"_s, count);
    QuotaTracker tracker(settings, clock());
    QSignalSpy counts(&tracker, &QuotaTracker::currentCountChanged);
    QSignalSpy months(&tracker, &QuotaTracker::monthYearChanged);
    m_now = m_now.addMonths(monthsLater);
    tracker.reset();
    const QString month = monthsLater == 0 ? u"2026-11"_s : u"2027-01"_s;
    QCOMPARE(tracker.currentCount(), 0);
    QCOMPARE(tracker.monthYear(), month);
    QCOMPARE(counts.size(), count == 0 ? 0 : 1);
    QCOMPARE(months.size(), monthsLater == 0 ? 0 : 1);
    QCOMPARE(settings.writes, bothEntries(0, month));
}

void QuotaTest::nextStart_findsWhatWasPersisted()
{
    TransientSettings settings;
    {
        QuotaTracker tracker(settings, clock());
        tracker.setCurrentCount(77);
        tracker.persist();
        tracker.setCurrentCount(78); // not persisted
    }
    QCOMPARE(QuotaTracker(settings, clock()).currentCount(), 77);
    m_now = m_now.addMonths(1);
    QCOMPARE(QuotaTracker(settings, clock()).currentCount(), 0);
}

void QuotaTest::properties_followTheTracker()
{
    TransientSettings settings;
    QuotaTracker tracker(settings, clock());
    QCOMPARE(tracker.property("monthlyLimit").toLongLong(), 500);
    QVERIFY(tracker.setProperty("currentCount", qint64(9)));
    QCOMPARE(tracker.currentCount(), 9);
    QCOMPARE(tracker.property("currentCount").toLongLong(), 9);
    QCOMPARE(tracker.property("monthYear").toString(), u"2026-11"_s);
    QVERIFY(QMetaObject::invokeMethod(&tracker, "reset"));
    QCOMPARE(tracker.property("currentCount").toLongLong(), 0);
}

QTEST_GUILESS_MAIN(QuotaTest)
#include "tst_quota.moc"
