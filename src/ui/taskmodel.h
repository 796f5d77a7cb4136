// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/queue.h"

#include <QAbstractListModel>
#include <QQmlEngine>

namespace pixpress {

/// The queue's tasks as rows, in its order, with the texts and symbols that a row shows. GUI thread
/// only.
class TaskModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has one.")
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)
    Q_PROPERTY(QString totalSavedText READ totalSavedText NOTIFY progressChanged)
    Q_PROPERTY(QString outcomeText READ outcomeText NOTIFY workEnded)

public:
    enum Role {
        FileName = Qt::UserRole,
        SourceURL,
        OriginalSize, ///< As text.
        TaskState,    ///< A State.
        StatusText,   ///< The failure's own sentence for a failed task.
        StatusSymbol, ///< Empty when the status has none.
        Savings,      ///< "-62%"; empty unless completed.
        Saved,        ///< "saved 1.5 MB"; empty unless completed.
        OutputURL,    ///< Empty unless completed.
        Summary,      ///< All of the row in words, for assistive technology.
    };

    /// The cases of TaskStatus.
    enum class State : quint8 { pending, uploading, compressing, downloading, completed, failed };
    Q_ENUM(State)

    /// `queue` must outlive the model.
    explicit TaskModel(CompressionQueue &queue);

    qsizetype count() const { return m_ids.size(); }
    QString progressText() const; ///< "3/10 completed"
    /// Empty unless something was saved in sum.
    QString totalSavedText() const;
    /// "3/4 completed, 1 failed, Total saved: 1.5 MB"; empty while tasks run or none has ended.
    QString outcomeText() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Makes the task of this row pending again, with these options.
    void retry(int row, const CompressionOptions &options);

Q_SIGNALS:
    // Not emitted when the value stays the same.
    void countChanged();
    void progressChanged();
    /// Tasks have ended, and no other runs now. Not emitted between a task and the next.
    void workEnded();

private:
    void onAdded(qsizetype first, qsizetype count);
    void onChanged(qsizetype index);
    void onRemoved();
    void tellOfEnd();
    const CompressionTask &taskAt(int row) const;

    CompressionQueue &m_queue;
    bool m_isEndDue = false; ///< A task has ended in this turn of the event loop.
    QList<QUuid> m_ids;      ///< Of the rows; the queue is ahead only while rows are taken out.
};

} // namespace pixpress
