// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/naivequeue.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

QString extensionOf(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > 0 ? name.mid(dot + 1) : QString();
}

bool isActive(const NaiveQueue::Task &task)
{
    return task.status == u"uploading" || task.status == u"compressing" ||
           task.status == u"downloading";
}

bool hasEnded(const NaiveQueue::Task &task)
{
    return task.status == u"completed" || task.status == u"failed";
}

QString extensionAfter(const CompressionOptions &options, const QString &file)
{
    if (!options.convertEnabled)
        return extensionOf(file);
    switch (options.convertFormat) {
    case ImageFormat::png: return u"png"_s;
    case ImageFormat::jpeg: return u"jpg"_s;
    case ImageFormat::webp: return u"webp"_s;
    case ImageFormat::avif: return u"avif"_s;
    }
    Q_UNREACHABLE();
}

/// The first of NAME.EXT, NAME-1.EXT, NAME-2.EXT … that is not there.
QString firstFree(const QMap<QString, QByteArray> &files, const QString &name,
                  const QString &extension)
{
    QString candidate = name + u'.' + extension;
    for (int n = 1; files.contains(candidate); ++n)
        candidate = name + u'-' + QString::number(n) + u'.' + extension;
    return candidate;
}

QString outputName(const QMap<QString, QByteArray> &files, const QString &file,
                   const CompressionOptions &options)
{
    const QString extension = extensionAfter(options, file);
    const QString base = file.chopped(extensionOf(file).size() + 1);
    switch (options.outputDestination) {
    case OutputDestination::alongside: return firstFree(files, base + u"-pixpress"_s, extension);
    case OutputDestination::overwrite:
        if (options.convertEnabled && extension != extensionOf(file).toLower())
            return base + u'.' + extension;
        return file;
    case OutputDestination::customFolder:
        if (!options.customFolderURL)
            return firstFree(files, base, extension);
        return firstFree(files, options.customFolderURL->fileName() + u'/' + base, extension);
    }
    Q_UNREACHABLE();
}

/// What the fetch asks for; empty when it asks for nothing. In the order of the alphabet.
QString fetchBody(const CompressionOptions &options)
{
    QStringList members;
    const QString format = extensionAfter(options, u"x."_s);
    if (options.convertEnabled)
        members.append(
            uR"("convert":{"type":["image/%1"]})"_s.arg(format == u"jpg" ? u"jpeg"_s : format));
    QStringList kept;
    if (options.preserveCopyright)
        kept.append(uR"("copyright")"_s);
    if (options.preserveCreation)
        kept.append(uR"("creation")"_s);
    if (options.preserveLocation)
        kept.append(uR"("location")"_s);
    if (!kept.isEmpty())
        members.append(uR"("preserve":[%1])"_s.arg(kept.join(u',')));
    if (options.resizeEnabled && (options.resizeWidth || options.resizeHeight)) {
        const bool both = options.resizeWidth && options.resizeHeight;
        QStringList sizes;
        if (options.resizeHeight)
            sizes.append(uR"("height":%1)"_s.arg(*options.resizeHeight));
        sizes.append(uR"("method":"%1")"_s.arg(both ? u"fit"_s : u"scale"_s));
        if (options.resizeWidth)
            sizes.append(uR"("width":%1)"_s.arg(*options.resizeWidth));
        members.append(uR"("resize":{%1})"_s.arg(sizes.join(u',')));
    }
    if (options.convertEnabled && (format == u"jpg" || format == u"avif"))
        members.append(uR"("transform":{"background":"%1"})"_s.arg(options.backgroundColor));
    return members.isEmpty() ? QString() : u'{' + members.join(u',') + u'}';
}

} // namespace

void NaiveQueue::addFiles(const QStringList &names, const CompressionOptions &options)
{
    for (const QString &name : names) {
        const QString extension = extensionOf(name).toLower();
        if (extension == u"png" || extension == u"jpg" || extension == u"jpeg" ||
            extension == u"webp" || extension == u"avif")
            tasks.append({.id = tasksEverMade++, .file = name, .options = options});
    }
    processNext();
}

void NaiveQueue::retryTask(int id, const CompressionOptions &options)
{
    if (find(id) < 0)
        return;
    Task &task = tasks[find(id)];
    task = {.id = id, .file = task.file, .options = options};
    processNext();
}

void NaiveQueue::clearCompleted()
{
    tasks.removeIf([](const Task &task) { return hasEnded(task); });
}

void NaiveQueue::clearAll()
{
    tasks.clear();
    activeTasks = 0;
}

void NaiveQueue::processNext()
{
    if (activeTasks >= 3 || firstPending() < 0)
        return;
    Task &task = tasks[firstPending()];
    if (apiKey.isEmpty()) {
        task.status = u"failed"_s;
        task.outcome = u"No API key configured"_s;
    } else if (watchesQuota && quotaCount >= 500) {
        task.status = u"failed"_s;
        task.outcome = u"Monthly quota exhausted"_s;
    } else {
        ++activeTasks;
        startRun({.id = task.id,
                  .index = firstPending(),
                  .file = task.file,
                  .options = task.options,
                  .apiKey = apiKey});
    }
}

void NaiveQueue::startRun(Run run)
{
    // A file that cannot be read ends the run in the next turn of the event loop.
    tasks[run.index].status = u"uploading"_s;
    const bool isFolder = folders.contains(run.file);
    if (isFolder || !files.contains(run.file)) {
        m_putOff.append({run.id, u"Could not read \"%1\": %2."_s.arg(
                                     run.file, isFolder ? u"It is not a regular file"_s
                                                        : u"No such file or directory"_s)});
        return;
    }
    tasks[run.index].status = u"compressing"_s;
    requests.append(
        u"POST /shrink by api:%1 %2"_s.arg(run.apiKey, QString::fromLatin1(files.value(run.file))));
    run.content = files.value(run.file);
    m_waiting.append(run);
}

void NaiveQueue::turn()
{
    // What these put off in their turn waits for the next.
    const QList<End> ends = std::exchange(m_putOff, {});
    for (const End &end : ends)
        fail(end.id, end.sentence);
}

bool NaiveQueue::wouldBeFatal(qsizetype which, const Reply &reply) const
{
    const Run &run = m_waiting.at(which);
    return !run.fetches && reply.sentence.isEmpty() && run.index >= tasks.size();
}

void NaiveQueue::answer(qsizetype which, const Reply &reply)
{
    const Run run = m_waiting.takeAt(which);
    if (!reply.sentence.isEmpty())
        fail(run.id, reply.sentence);
    else if (run.fetches)
        write(run, reply);
    else
        fetch(run, reply);
}

/// The upload has succeeded.
void NaiveQueue::fetch(Run run, const Reply &reply)
{
    updateQuota(reply.count.value_or(0));

    // Whichever task stands there now.
    Task &task = tasks[run.index];
    hasMistakenTasks |= task.id != run.id;
    task = {.id = task.id, .file = task.file, .options = task.options, .status = u"downloading"_s};

    const QString body = fetchBody(run.options);
    requests.append(body.isEmpty() ? u"GET %1 by api:%2 "_s.arg(reply.location, run.apiKey)
                                   : u"POST %1 by api:%2 as application/json %3"_s.arg(
                                         reply.location, run.apiKey, body));
    run.fetches = true;
    run.inputSize = reply.inputSize;
    m_waiting.append(run);
}

/// The fetch has succeeded.
void NaiveQueue::write(const Run &run, const Reply &reply)
{
    if (reply.count.value_or(0) > 0)
        updateQuota(*reply.count);
    if (reply.output.isEmpty())
        return fail(run.id, u"Failed to download compressed image"_s);
    const QString name = outputName(files, run.file, run.options);
    const QStringList parts = name.split(u'/');
    if (parts.size() > 1 && !folders.contains(parts.first())) {
        return fail(run.id,
                    u"Could not write \"%1\": No such file or directory."_s.arg(parts.last()));
    }
    if (run.options.outputDestination == OutputDestination::overwrite && name == run.file &&
        files.value(name) != run.content) {
        return fail(run.id, u"Could not write \"%1\": %2."_s.arg(
                                name, files.contains(name) ? u"It has changed since it was read"_s
                                                           : u"No such file or directory"_s));
    }
    files[name] = reply.output;
    if (find(run.id) >= 0) {
        Task &task = tasks[find(run.id)];
        task.status = u"completed"_s;
        task.saved = run.inputSize - reply.output.size();
        task.outcome = test::describe(run.inputSize, reply.output.size(), name, u"image/png"_s,
                                      u"image/webp"_s, 40, 30);
    }
    endRun();
}

void NaiveQueue::fail(int id, const QString &sentence)
{
    if (find(id) >= 0) {
        Task &task = tasks[find(id)];
        task.status = u"failed"_s;
        task.outcome = sentence;
        task.saved = 0;
    }
    endRun();
}

void NaiveQueue::endRun()
{
    --activeTasks;
    processNext();
}

void NaiveQueue::updateQuota(qint64 count)
{
    if (!watchesQuota)
        return;
    quotaMonth = currentMonth;
    quotaCount = count;
    storedQuota = QString::number(count) + u" in "_s + currentMonth;
}

qsizetype NaiveQueue::find(int id) const
{
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        if (tasks[i].id == id)
            return i;
    }
    return -1;
}

qsizetype NaiveQueue::firstPending() const
{
    for (qsizetype i = 0; i < tasks.size(); ++i) {
        if (tasks[i].status == u"pending")
            return i;
    }
    return -1;
}

qsizetype NaiveQueue::completedCount() const
{
    return std::ranges::count(tasks, u"completed"_s, &Task::status);
}

QStringList NaiveQueue::describe() const
{
    Totals totals{.activeTasks = activeTasks,
                  .completedCount = completedCount(),
                  .firstPending = firstPending(),
                  .quotaCount = quotaCount,
                  .quotaMonth = quotaMonth,
                  .storedQuota = storedQuota};
    QStringList lines;
    for (const Task &task : tasks) {
        lines.append(test::describe(task.file, task.options, task.status, task.outcome));
        totals.hasActiveTasks |= isActive(task);
        totals.hasEndedTasks |= hasEnded(task);
        totals.totalSaved += task.saved;
    }
    lines += totals.lines() + requests;
    for (const auto &[name, content] : files.asKeyValueRange())
        lines.append(u"file %1: %2"_s.arg(name, QString::fromLatin1(content)));
    return lines;
}

} // namespace pixpress::test
