// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/report.h"

#include "cli/columns.h"
#include "model/bytes.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <sys/ioctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress::cli {

namespace {

constexpr qsizetype widestName = 40;

/// A text that cannot steer a terminal: file names and the service's words may hold anything.
QString printable(QString text)
{
    std::ranges::replace_if(text, [](QChar c) { return !c.isPrint() && !c.isSurrogate(); }, u'?');
    return text;
}

qsizetype terminalWidth()
{
    winsize size = {};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

QString savings(qint64 percent)
{
    return percent < 0 ? u"%1% larger"_s.arg(-percent) : u"%1% saved"_s.arg(percent);
}

QString activity(const TaskStatus &status)
{
    if (std::holds_alternative<status::Uploading>(status))
        return u"reading"_s;
    if (std::holds_alternative<status::Compressing>(status))
        return u"compressing"_s;
    return u"fetching"_s;
}

QString files(qint64 count)
{
    return count == 1 ? u"1 file"_s : u"%1 files"_s.arg(count);
}

QJsonObject json(const CompressionTask &task)
{
    QJsonObject object{{u"file"_s, task.sourceURL.toLocalFile()}};
    if (const auto *completed = std::get_if<status::Completed>(&task.status)) {
        const CompressionResult &result = completed->result;
        object[u"status"_s] = u"completed"_s;
        object[u"output"_s] = result.outputURL.toLocalFile();
        object[u"originalSize"_s] = result.originalSize;
        object[u"compressedSize"_s] = result.compressedSize;
        object[u"savingsPercentage"_s] = result.savingsPercentage();
    } else if (const auto *failed = std::get_if<status::Failed>(&task.status)) {
        object[u"status"_s] = u"failed"_s;
        object[u"error"_s] = failed->error;
    }
    return object;
}

/// Original sizes are the service's word: absurd ones stay at the largest sum that there is.
void add(qint64 &sum, qint64 size)
{
    if (qAddOverflow(sum, size, &sum))
        sum = std::numeric_limits<qint64>::max();
}

} // namespace

Report::Report(bool json, const QStringList &names)
    : m_json(json), m_isTerminal(isatty(STDOUT_FILENO) == 1), m_out(stdout), m_err(stderr)
{
    for (const QString &name : names)
        m_nameWidth = std::max(m_nameWidth, std::min(columnsOf(printable(name)), widestName));
}

void Report::skipped(const QString &file, const QString &reason)
{
    if (m_json) {
        const QJsonObject object{
            {u"file"_s, file}, {u"status"_s, u"skipped"_s}, {u"error"_s, reason}};
        line(m_out, QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)));
    } else {
        line(m_err, u"%1  Skipped: %2"_s.arg(column(file), reason));
    }
}

void Report::unreadable(const QString &folder)
{
    m_hasUnreadable = true;
    skipped(folder, u"The folder cannot be read"_s);
}

void Report::ended(const CompressionTask &task)
{
    const auto *completed = std::get_if<status::Completed>(&task.status);
    if (completed) {
        ++m_completed;
        add(m_originalSize, completed->result.originalSize);
        add(m_compressedSize, completed->result.compressedSize);
    } else {
        ++m_failed;
    }

    if (m_json) {
        line(m_out, QString::fromUtf8(QJsonDocument(json(task)).toJson(QJsonDocument::Compact)));
        return;
    }
    const QString name = column(task.fileName);
    if (completed) {
        const CompressionResult &result = completed->result;
        line(m_out, u"%1  %2 -> %3  %4  %5"_s.arg(
                        name, ByteFormatter::format(result.originalSize).rightJustified(9),
                        ByteFormatter::format(result.compressedSize).leftJustified(9),
                        savings(result.savingsPercentage()).rightJustified(10),
                        printable(result.outputURL.fileName())));
    } else {
        line(m_out,
             u"%1  Failed: %2"_s.arg(name, printable(std::get<status::Failed>(task.status).error)));
    }
}

void Report::progress(const QList<CompressionTask> &tasks, const std::set<qsizetype> &running,
                      qsizetype endedCount)
{
    if (!m_isTerminal || m_json)
        return;
    QStringList activities;
    for (const qsizetype index : running)
        activities.append(activity(tasks[index].status) + u' ' + printable(tasks[index].fileName));
    const QString text =
        u"%1 of %2  "_s.arg(endedCount).arg(tasks.size()) + activities.join(u", "_s);
    clearProgress();
    m_out << cutToColumns(text, terminalWidth() - 1);
    m_out.flush();
    m_progressShown = true;
}

void Report::total()
{
    if (m_json)
        return;
    clearProgress();
    QStringList parts;
    if (m_completed > 0) {
        // Sums of sizes have a percentage by the same rule as a single file.
        const CompressionResult sum{.originalSize = m_originalSize,
                                    .compressedSize = m_compressedSize};
        parts.append(u"%1 compressed, %2 -> %3, %4"_s.arg(
            files(m_completed), ByteFormatter::format(m_originalSize),
            ByteFormatter::format(m_compressedSize), savings(sum.savingsPercentage())));
    }
    if (m_failed > 0)
        parts.append(u"%1 failed"_s.arg(files(m_failed)));
    if (parts.isEmpty())
        parts.append(u"Nothing to compress"_s);
    line(m_out, parts.join(u"; "_s) + u'.');
}

void Report::interrupted()
{
    line(m_err, u"Interrupted. Files that were not finished have not been touched."_s);
}

void Report::line(QTextStream &stream, const QString &text)
{
    clearProgress();
    stream << text << '\n';
    stream.flush();
}

void Report::clearProgress()
{
    if (!m_progressShown)
        return;
    m_out << "\r\033[K";
    m_out.flush();
    m_progressShown = false;
}

QString Report::column(const QString &fileName) const
{
    return paddedToColumns(printable(fileName), m_nameWidth);
}

} // namespace pixpress::cli
