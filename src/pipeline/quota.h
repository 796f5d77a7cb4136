// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/settings.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <functional>

namespace pixpress {

/// How many compressions the user's key has used this month, as the service last reported it. The
/// count is never raised locally: the service's number replaces it, a new month or the user sets
/// it to zero. GUI thread only.
class QuotaTracker : public QObject
{
    Q_OBJECT
    Q_PROPERTY(
        qint64 currentCount READ currentCount WRITE setCurrentCount NOTIFY currentCountChanged)
    Q_PROPERTY(QString monthYear READ monthYear WRITE setMonthYear NOTIFY monthYearChanged)
    Q_PROPERTY(qint64 monthlyLimit MEMBER monthlyLimit CONSTANT)

public:
    using Clock = std::function<QDateTime()>; ///< The current time in the user's time zone.
    static QDateTime systemTime() { return QDateTime::currentDateTime(); }

    /// Takes up the stored count when it is of this month, else stores 0 for this month at once.
    /// `settings` must outlive the tracker.
    explicit QuotaTracker(SettingsStore &settings, Clock clock = &systemTime);

    qint64 currentCount() const { return m_currentCount; }
    QString monthYear() const { return m_monthYear; } ///< "yyyy-MM" that the count belongs to.
    const qint64 monthlyLimit = 500;                  ///< The service's free allowance.

    // Neither is stored: persist() follows.
    void setCurrentCount(qint64 count);
    void setMonthYear(const QString &month);

    /// Starts at 0 when the month has changed. Does not store it: persist() follows.
    void checkMonthRollover();
    /// Stores the count and its month.
    void persist();
    /// Sets the local count to 0, and stores it. The service's next answer brings the real one
    /// back.
    Q_INVOKABLE void reset();

Q_SIGNALS:
    // Not emitted when an equal value is set.
    void currentCountChanged();
    void monthYearChanged();

private:
    QString currentMonth() const;

    SettingsStore &m_settings;
    const Clock m_clock;
    qint64 m_currentCount = 0;
    QString m_monthYear;
};

} // namespace pixpress
