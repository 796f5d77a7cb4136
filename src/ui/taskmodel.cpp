// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/taskmodel.h"

#include "model/bytes.h"
#include "ui/singleline.h"

#include <QGuiApplication>

#include <algorithm>

namespace pixpress {

namespace {

using State = TaskModel::State;

State stateOf(const TaskStatus &status)
{
    struct Visitor
    {
        State operator()(const status::Completed &) const { return State::completed; }
        State operator()(const status::Failed &) const { return State::failed; }
        State operator()(const status::Pending &) const { return State::pending; }
        State operator()(const status::Uploading &) const { return State::uploading; }
        State operator()(const status::Compressing &) const { return State::compressing; }
        State operator()(const status::Downloading &) const { return State::downloading; }
    };
    return std::visit(Visitor(), status);
}

const CompressionResult *resultOf(const CompressionTask &task)
{
    const auto *completed = std::get_if<status::Completed>(&task.status);
    return completed ? &completed->result : nullptr;
}

/// Where one writes from right to left a unit would come before its number, and a sign after it.
QString sizeText(qint64 bytes)
{
    const QString size = ByteFormatter::format(bytes);
    return QGuiApplication::isRightToLeft() ? u'\u2066' + size + u'\u2069' : size;
}

QString statusText(const CompressionTask &task)
{
    switch (stateOf(task.status)) {
    case State::pending: return TaskModel::tr("Queued");
    case State::uploading: return TaskModel::tr("Uploading");
    case State::compressing: return TaskModel::tr("Compressing");
    case State::downloading: return TaskModel::tr("Downloading");
    case State::completed:
        //: What a file has become; with ← in languages that are written from right to left.
        return TaskModel::tr("→ %1").arg(sizeText(resultOf(task)->compressedSize));
    case State::failed: return std::get<status::Failed>(task.status).error;
    }
    Q_UNREACHABLE();
}

QString statusSymbol(State state)
{
    switch (state) {
    case State::pending: return QStringLiteral("clock");
    case State::uploading: return QStringLiteral("arrow.up.circle");
    case State::compressing: return QStringLiteral("gearshape.2");
    case State::downloading: return QStringLiteral("arrow.down.circle");
    case State::completed:
    case State::failed: return {};
    }
    Q_UNREACHABLE();
}

/// The sign stands in front of every number: an output that grew reads "--5%".
QString savingsText(const CompressionTask &task)
{
    const auto *result = resultOf(task);
    return result ? QStringLiteral("-%1%").arg(result->savingsPercentage()) : QString();
}

QString savedText(const CompressionTask &task)
{
    const auto *result = resultOf(task);
    if (!result)
        return {};
    qint64 saved = 0;
    if (__builtin_sub_overflow(result->originalSize, result->compressedSize, &saved))
        qFatal("The sizes of \"%s\" are too far apart.", qUtf8Printable(task.fileName));
    return TaskModel::tr("saved %1").arg(sizeText(saved));
}

QString summary(const CompressionTask &task)
{
    QStringList words{toSingleLine(task.fileName), ByteFormatter::format(task.originalSize),
                      statusText(task), savingsText(task), savedText(task)};
    words.removeAll(QString());
    return words.join(QStringLiteral(", "));
}

} // namespace

TaskModel::TaskModel(CompressionQueue &queue) : m_queue(queue)
{
    connect(&queue, &CompressionQueue::tasksAdded, this, &TaskModel::onAdded);
    connect(&queue, &CompressionQueue::taskChanged, this, &TaskModel::onChanged);
    connect(&queue, &CompressionQueue::tasksRemoved, this, &TaskModel::onRemoved);
    connect(&queue, &CompressionQueue::completedCountChanged, this, &TaskModel::progressChanged);
    connect(&queue, &CompressionQueue::totalSavedChanged, this, &TaskModel::progressChanged);
    connect(this, &TaskModel::countChanged, this, &TaskModel::progressChanged);
}

QString TaskModel::progressText() const
{
    return tr("%1/%n completed", nullptr, static_cast<int>(count())).arg(m_queue.completedCount());
}

QString TaskModel::totalSavedText() const
{
    const qint64 saved = m_queue.totalSaved();
    return saved > 0 ? tr("Total saved: %1").arg(sizeText(saved)) : QString();
}

QString TaskModel::outcomeText() const
{
    if (m_queue.hasActiveTasks() || !m_queue.hasEndedTasks())
        return {};
    const auto failed = std::ranges::count_if(m_queue.tasks(), [](const CompressionTask &task) {
        return stateOf(task.status) == State::failed;
    });
    QStringList words{progressText(), tr("%n failed", nullptr, static_cast<int>(failed)),
                      totalSavedText()};
    if (failed == 0)
        words.removeAt(1);
    words.removeAll(QString());
    return words.join(QStringLiteral(", "));
}

int TaskModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_ids.size());
}

QVariant TaskModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    // A row that is about to go can still be asked about, when its task has gone already.
    if (m_queue.indexOf(m_ids[index.row()]) < 0)
        return {};
    const CompressionTask &task = taskAt(index.row());
    switch (role) {
    case FileName: return toSingleLine(task.fileName);
    case SourceURL: return task.sourceURL;
    case OriginalSize: return ByteFormatter::format(task.originalSize);
    case TaskState: return QVariant::fromValue(stateOf(task.status));
    case StatusText: return statusText(task);
    case StatusSymbol: return statusSymbol(stateOf(task.status));
    case Savings: return savingsText(task);
    case Saved: return savedText(task);
    case OutputURL: return resultOf(task) ? resultOf(task)->outputURL : QUrl();
    case Summary: return summary(task);
    default: return {};
    }
}

QHash<int, QByteArray> TaskModel::roleNames() const
{
    return {{FileName, "fileName"},   {SourceURL, "sourceURL"},   {OriginalSize, "originalSize"},
            {TaskState, "taskState"}, {StatusText, "statusText"}, {StatusSymbol, "statusSymbol"},
            {Savings, "savings"},     {Saved, "saved"},           {OutputURL, "outputURL"},
            {Summary, "summary"}};
}

void TaskModel::retry(int row, const CompressionOptions &options)
{
    if (row >= 0 && row < count())
        m_queue.retryTask(m_ids[row], options);
}

void TaskModel::onAdded(qsizetype first, qsizetype count)
{
    beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + count - 1));
    m_ids.reserve(first + count);
    for (qsizetype index = first; index < first + count; ++index)
        m_ids.append(m_queue.tasks()[index].id);
    endInsertRows();
    Q_EMIT countChanged();
}

void TaskModel::onChanged(qsizetype index)
{
    const QModelIndex row = this->index(static_cast<int>(index));
    Q_EMIT dataChanged(row, row,
                       {TaskState, StatusText, StatusSymbol, Savings, Saved, OutputURL, Summary});
    const State state = stateOf(m_queue.tasks()[index].status);
    if (m_isEndDue || (state != State::completed && state != State::failed))
        return;
    m_isEndDue = true; // unless the next task starts before this turn of the event loop is over
    QMetaObject::invokeMethod(this, &TaskModel::tellOfEnd, Qt::QueuedConnection);
}

void TaskModel::tellOfEnd()
{
    m_isEndDue = false;
    if (!outcomeText().isEmpty())
        Q_EMIT workEnded();
}

void TaskModel::onRemoved()
{
    // From the end, so that the rows before stay where they are; in runs, so that clearing a list
    // of thousands is a few steps.
    const auto isGone = [this](qsizetype row) { return m_queue.indexOf(m_ids[row]) < 0; };
    for (qsizetype last = count() - 1; last >= 0; --last) {
        if (!isGone(last))
            continue;
        qsizetype first = last;
        while (first > 0 && isGone(first - 1))
            --first;
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(last));
        m_ids.remove(first, last - first + 1);
        endRemoveRows();
        last = first;
    }
    Q_EMIT countChanged();
}

const CompressionTask &TaskModel::taskAt(int row) const
{
    return m_queue.tasks()[m_queue.indexOf(m_ids[row])];
}

} // namespace pixpress
