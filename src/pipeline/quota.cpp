// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/quota.h"

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

const QString monthEntry = u"pixpress_quota_month"_s;
const QString countEntry = u"pixpress_quota_count"_s;

} // namespace

QuotaTracker::QuotaTracker(SettingsStore &settings, Clock clock)
    : m_settings(settings), m_clock(std::move(clock)), m_monthYear(currentMonth())
{
    if (m_settings.value(monthEntry).toString() == m_monthYear)
        m_currentCount = m_settings.value(countEntry).toLongLong();
    else
        persist();
}

void QuotaTracker::setCurrentCount(qint64 count)
{
    if (m_currentCount == count)
        return;
    m_currentCount = count;
    Q_EMIT currentCountChanged();
}

void QuotaTracker::setMonthYear(const QString &month)
{
    if (m_monthYear == month)
        return;
    m_monthYear = month;
    Q_EMIT monthYearChanged();
}

void QuotaTracker::checkMonthRollover()
{
    const QString month = currentMonth();
    if (month == m_monthYear)
        return;
    setCurrentCount(0);
    setMonthYear(month);
}

void QuotaTracker::persist()
{
    m_settings.setValues({{countEntry, m_currentCount}, {monthEntry, m_monthYear}});
}

void QuotaTracker::reset()
{
    setCurrentCount(0);
    setMonthYear(currentMonth());
    persist();
}

QString QuotaTracker::currentMonth() const
{
    return m_clock().toString(u"yyyy-MM"_s);
}

} // namespace pixpress
