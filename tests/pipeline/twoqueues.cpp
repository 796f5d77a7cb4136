// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/twoqueues.h"

#include "pipeline/folder.h"
#include "pipeline/queueoftest.h"

#include <QCoreApplication>
#include <QDirIterator>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

const auto countEntry = u"pixpress_quota_count"_s;
const auto monthEntry = u"pixpress_quota_month"_s;

QByteArray firstContent(const QString &name)
{
    return "source of " + name.toLatin1();
}

void put(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("The test cannot write its files.");
}

QMap<QString, QByteArray> filesBelow(const QString &root)
{
    QMap<QString, QByteArray> files;
    QDirIterator entries(root, QDir::Files | QDir::Hidden | QDir::System,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        QFile file(entries.next());
        const bool readable = file.open(QIODevice::ReadOnly);
        files.insert(file.fileName().mid(root.size() + 1),
                     readable ? file.readAll() : QByteArray("cannot be opened"));
    }
    return files;
}

struct Failure
{
    HttpResult result;
    QString sentence;
};

std::unexpected<TransportError> lost()
{
    return std::unexpected(TransportError{TransportError::Case::other, u"It was lost."_s});
}

HttpResult plain(int status, const QByteArray &body = {})
{
    return HttpResponse{.status = status, .headers = {}, .body = body};
}

/// Of uploads and fetches alike, number 0 being none.
const QList<Failure> &failures()
{
    static const QList<Failure> all{
        {{}, {}},
        {lost(), u"It was lost."_s},
        {plain(401), u"Invalid API key"_s},
        {plain(429), u"Monthly compression limit reached (500/month)"_s},
        {plain(413), u"File exceeds 500 MB limit"_s},
        {plain(415), u"Unsupported image format"_s},
        {plain(500), u"API error (500): Unknown error"_s},
        {plain(503, R"({"error":"Busy","message":"Come back."})"),
         u"API error (503): Come back."_s},
        {plain(202), u"API error (202): Unknown error"_s},
        {std::unexpected(TransportError{TransportError::Case::notHTTP, u"Garbage."_s}),
         u"Invalid server response"_s},
    };
    return all;
}

HttpResult success(const Reply &reply, bool upload)
{
    HttpResponse response{.status = upload ? 201 : 200, .headers = {}, .body = reply.output};
    if (upload) {
        response.headers.insert("location", reply.location.toLatin1());
        response.body = R"({"input":{"size":)" + QByteArray::number(reply.inputSize) +
                        R"(,"type":"image/png"},"output":{"size":9,"type":"image/webp",)"
                        R"("width":40,"height":30,"ratio":0.5}})";
    }
    if (reply.count)
        response.headers.insert("compression-count", QByteArray::number(*reply.count));
    return response;
}

} // namespace

TwoQueues::TwoQueues()
{
    held::forget();
    const QDir root(m_folder.path());
    for (const QString &folder : {u"out"_s, u"folder.png"_s}) {
        root.mkdir(folder);
        m_naive.folders.insert(folder);
    }
    for (const char *file : existingFiles) {
        const QString name = QString::fromLatin1(file);
        put(root.filePath(name), firstContent(name));
        m_naive.files.insert(name, firstContent(name));
    }
    KeychainHelper::saveAPIKey(m_settings, u"key"_s);
    m_naive.apiKey = u"key"_s;
    m_naive.currentMonth = m_naive.quotaMonth = u"2026-11"_s;
    m_naive.storedQuota = u"0 in 2026-11"_s;
    m_queue = std::make_unique<CompressionQueue>(m_settings);
    m_queue->setQuotaTracker(&m_tracker);
    follow();
}

TwoQueues::~TwoQueues() = default;

/// Listens to every signal of the real queue.
void TwoQueues::follow()
{
    CompressionQueue *const queue = m_queue.get();
    const auto on = [queue](auto signal, auto slot) {
        QObject::connect(queue, signal, queue, slot);
    };
    on(&CompressionQueue::tasksAdded, [this, queue](qsizetype first, qsizetype count) {
        if (first != m_toldTasks.size())
            m_toldTasks.append(u"a gap"_s);
        for (qsizetype i = first; i < first + count; ++i) {
            m_toldTasks.append(describe(queue->tasks()[i]));
            m_ids.append(queue->tasks()[i].id);
        }
    });
    on(&CompressionQueue::taskChanged,
       [this, queue](qsizetype index) { m_toldTasks[index] = describe(queue->tasks()[index]); });
    on(&CompressionQueue::tasksRemoved, [this, queue] {
        m_toldTasks.clear();
        for (const CompressionTask &task : queue->tasks())
            m_toldTasks.append(describe(task));
    });
    on(&CompressionQueue::activeTasksChanged,
       [this, queue] { m_toldTotals.activeTasks = queue->activeTasks(); });
    // These two are told when they change, and never else.
    on(&CompressionQueue::hasActiveTasksChanged,
       [this] { m_toldTotals.hasActiveTasks = !m_toldTotals.hasActiveTasks; });
    on(&CompressionQueue::hasEndedTasksChanged,
       [this] { m_toldTotals.hasEndedTasks = !m_toldTotals.hasEndedTasks; });
    on(&CompressionQueue::completedCountChanged,
       [this, queue] { m_toldTotals.completedCount = queue->completedCount(); });
    on(&CompressionQueue::totalSavedChanged,
       [this, queue] { m_toldTotals.totalSaved = queue->totalSaved(); });
}

void TwoQueues::apply(const Command &command)
{
    std::visit([this](const auto &each) { run(each); }, command);
}

void TwoQueues::run(const Add &add)
{
    QStringList names;
    QList<QUrl> urls;
    for (const int file : add.files) {
        names.append(QString::fromLatin1(fileNames.at(static_cast<size_t>(file))));
        urls.append(QUrl::fromLocalFile(m_folder.filePath(names.last())));
    }
    m_queue->addFiles(urls, add.asked.options(m_folder.path()));
    m_naive.addFiles(names, add.asked.options(m_folder.path()));
}

void TwoQueues::run(const Retry &retry)
{
    if (m_ids.isEmpty())
        return;
    const int id = retry.task % static_cast<int>(m_ids.size());
    m_queue->retryTask(m_ids[id], retry.asked.options(m_folder.path()));
    m_naive.retryTask(id, retry.asked.options(m_folder.path()));
}

void TwoQueues::run(const ClearCompleted & /*clear*/)
{
    m_queue->clearCompleted();
    m_naive.clearCompleted();
}

void TwoQueues::run(const ClearAll & /*clear*/)
{
    m_queue->clearAll();
    m_naive.clearAll();
}

void TwoQueues::run(const AnswerOne &answer)
{
    if (held::waiting() == 0)
        return;
    const qsizetype which = answer.request % held::waiting();
    const bool upload = held::isUpload(which);
    ++m_answers;
    Reply reply{.sentence = failures()[answer.failure].sentence,
                .count = counts.at(static_cast<size_t>(answer.count)),
                .inputSize = 20 + answer.size,
                .location = u"/output/%1"_s.arg(m_answers)};
    // No output at all is an answer as well.
    if (answer.size != 1)
        reply.output = "output " + QByteArray::number(m_answers) + QByteArray(answer.size, '.');
    if (m_naive.wouldBeFatal(which, reply))
        return;
    held::answer(which,
                 answer.failure > 0 ? failures()[answer.failure].result : success(reply, upload));
    m_naive.answer(which, reply);
}

void TwoQueues::run(const LoopTurns & /*turns*/)
{
    QCoreApplication::sendPostedEvents();
    m_naive.turn();
}

void TwoQueues::run(const SetKey &set)
{
    const QString key = QString::fromLatin1(keys.at(static_cast<size_t>(set.key)));
    KeychainHelper::saveAPIKey(m_settings, key);
    m_naive.apiKey = key;
}

void TwoQueues::run(const SetQuota &set)
{
    const qint64 count = counts.at(static_cast<size_t>(set.count)).value_or(0);
    m_tracker.setCurrentCount(count);
    m_naive.quotaCount = count;
}

void TwoQueues::run(const WatchQuota &watch)
{
    m_queue->setQuotaTracker(watch.on ? &m_tracker : nullptr);
    m_naive.watchesQuota = watch.on;
}

void TwoQueues::run(const NextMonth & /*next*/)
{
    m_now = m_now.addMonths(1);
    m_naive.currentMonth = m_now.toString(u"yyyy-MM"_s);
}

void TwoQueues::run(const RemoveFile &remove)
{
    const QString name = QString::fromLatin1(existingFiles.at(static_cast<size_t>(remove.file)));
    QFile::remove(m_folder.filePath(name));
    m_naive.files.remove(name);
}

void TwoQueues::run(const RestoreFile &restore)
{
    const QString name = QString::fromLatin1(existingFiles.at(static_cast<size_t>(restore.file)));
    put(m_folder.filePath(name), firstContent(name));
    m_naive.files.insert(name, firstContent(name));
}

QString TwoQueues::describe(const CompressionTask &task) const
{
    QString status = text(task.status);
    QString outcome;
    if (const auto *failed = std::get_if<status::Failed>(&task.status)) {
        status = u"failed"_s;
        outcome = failed->error;
    } else if (const auto *completed = std::get_if<status::Completed>(&task.status)) {
        const CompressionResult &result = completed->result;
        outcome = test::describe(result.originalSize, result.compressedSize,
                                 result.outputURL.toLocalFile().mid(m_folder.path().size() + 1),
                                 result.inputType, result.outputType, result.width, result.height);
    }
    return test::describe(task.sourceURL.toLocalFile().mid(m_folder.path().size() + 1),
                          task.options, status, outcome);
}

QStringList TwoQueues::describe() const
{
    QStringList lines;
    for (const CompressionTask &task : m_queue->tasks())
        lines.append(describe(task));
    const Totals totals{.activeTasks = m_queue->activeTasks(),
                        .hasActiveTasks = m_queue->hasActiveTasks(),
                        .hasEndedTasks = m_queue->hasEndedTasks(),
                        .completedCount = m_queue->completedCount(),
                        .totalSaved = m_queue->totalSaved(),
                        .firstPending = m_queue->firstPending(),
                        .quotaCount = m_tracker.currentCount(),
                        .quotaMonth = m_tracker.monthYear(),
                        .storedQuota = m_settings.value(countEntry).toString() + u" in "_s +
                                       m_settings.value(monthEntry).toString()};
    lines += totals.lines() + held::made();
    const auto files = filesBelow(m_folder.path());
    for (const auto &[name, content] : files.asKeyValueRange())
        lines.append(u"file %1: %2"_s.arg(name, QString::fromLatin1(content)));
    return lines;
}

/// What somebody who only listens to the signals has got wrong.
QString TwoQueues::toldWrongly() const
{
    QStringList told = m_toldTasks;
    QStringList seen;
    for (const CompressionTask &task : m_queue->tasks())
        seen.append(describe(task));
    told += u"%1 %2 %3 %4 %5"_s.arg(m_toldTotals.activeTasks)
                .arg(m_toldTotals.hasActiveTasks)
                .arg(m_toldTotals.hasEndedTasks)
                .arg(m_toldTotals.completedCount)
                .arg(m_toldTotals.totalSaved);
    seen += u"%1 %2 %3 %4 %5"_s.arg(m_queue->activeTasks())
                .arg(m_queue->hasActiveTasks())
                .arg(m_queue->hasEndedTasks())
                .arg(m_queue->completedCount())
                .arg(m_queue->totalSaved());
    return told == seen ? QString()
                        : u"told by signals: %1\nis: %2"_s.arg(told.join(u"; "), seen.join(u"; "));
}

QString TwoQueues::difference() const
{
    if (!m_queue) {
        const auto files = filesBelow(m_folder.path());
        return files == m_naive.files ? QString() : u"The end of the queue has changed a file."_s;
    }
    const QStringList real = describe();
    const QStringList naive = m_naive.describe();
    for (qsizetype i = 0; i < std::max(real.size(), naive.size()); ++i) {
        if (real.value(i) != naive.value(i))
            return u"queue: %1\nrules: %2"_s.arg(real.value(i), naive.value(i));
    }
    if (held::waiting() != m_naive.waiting())
        return u"Other requests wait."_s;
    for (qsizetype i = 0; i < m_queue->tasks().size(); ++i) {
        if (m_queue->indexOf(m_queue->tasks()[i].id) != i)
            return u"Task %1 is not found by its id."_s.arg(i);
    }
    return toldWrongly();
}

} // namespace pixpress::test
