// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/longrun.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

constexpr int longestWait = 120; // seconds, in which something must end
constexpr int manyWaiting = 60;

constexpr auto folders = {"out", "read-only"};

bool put(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

} // namespace

LongRun::LongRun(quint32 seed, int pictures)
    : m_seed(seed),
      m_random(seed),
      m_service(seed, pictures),
      m_queue(m_settings, ServiceConfig{.baseURL = m_service.url(), .limits = {}}),
      m_pictures(static_cast<size_t>(pictures))
{
    for (const auto *folder : folders)
        QDir(m_folder.path()).mkdir(QLatin1StringView(folder));
    QFile::setPermissions(m_folder.filePath(u"read-only"_s), QFile::ReadOwner | QFile::ExeOwner);
    put(m_folder.filePath(u"file"_s), "x");
    KeychainHelper::saveAPIKey(m_settings, u"key"_s);
    m_queue.setQuotaTracker(&m_tracker);
    m_outputs.reserve(pictures * 2);
    m_ended.reserve(m_pictures.size());

    QObject::connect(&m_queue, &CompressionQueue::taskChanged, &m_loop,
                     [this](qsizetype index) { follow(index); });
    QObject::connect(&m_queue, &CompressionQueue::tasksRemoved, &m_loop,
                     [this] { afterRemoval(); });
}

QString LongRun::sourcePath(int number) const
{
    return m_folder.filePath(u"%1.png"_s.arg(number, 6, 10, QChar(u'0')));
}

int LongRun::dice(int below)
{
    // The standard's distributions differ from library to library, a seed should not.
    return static_cast<int>(m_random() % static_cast<quint32>(below));
}

bool LongRun::isIdle() const
{
    return m_queue.activeTasks() == 0;
}

void LongRun::runUntil(int pictures)
{
    while (complaints.isEmpty() && (m_added < pictures || !isIdle())) {
        // Now and then the queue comes to rest, which is when the list can always be cleared.
        m_resting = isIdle() ? false : m_resting || dice(200) == 0;
        if (isIdle() && dice(2) == 0)
            clear();
        if (m_added < pictures && m_open < manyWaiting && !m_resting)
            addBatch(pictures);
        act();
        if (isIdle())
            continue;
        m_loop.enterLoop(longestWait);
        if (m_loop.timeout())
            complaints.append(u"Nothing has ended for long."_s);
    }
    if (complaints.isEmpty() && m_queue.firstPending() >= 0)
        complaints.append(u"The queue has stopped though a task is pending."_s);
}

void LongRun::act()
{
    const int chance = dice(100);
    if (chance < 6 && !m_ended.empty())
        retry(m_ended.at(static_cast<size_t>(dice(static_cast<int>(m_ended.size())))));
    else if (chance < 16)
        clear();
    else if (chance < 17 && m_added > 0)
        removeSource(dice(m_added));
}

void LongRun::addBatch(int limit)
{
    const CompressionOptions options = anyOptions();
    QList<int> numbers;
    for (int left = 1 + dice(20); left > 0 && m_added < limit; --left) {
        const int number = m_added;
        const Fault fault = planned(m_seed, number, 1);
        if (static_cast<int>(fault) >= firstDiskFault && !numbers.isEmpty())
            break;
        ++m_added;
        at(number).exists = put(sourcePath(number), NumberedPicture{number}.bytes());
        if (static_cast<int>(fault) < firstDiskFault) {
            numbers.append(number);
            continue;
        }
        // Its disk fails it, and it alone.
        CompressionOptions failing = options;
        failing.convertEnabled = false; // the sentence names the output
        failing.outputDestination = OutputDestination::customFolder;
        const auto *folder = fault == Fault::noFolder         ? "gone"
                             : fault == Fault::fileForFolder  ? "file"
                             : fault == Fault::readOnlyFolder ? "read-only"
                                                              : "out";
        failing.customFolderURL = QUrl::fromLocalFile(m_folder.filePath(QLatin1StringView(folder)));
        if (fault == Fault::sourceGone)
            removeSource(number);
        return add({number}, failing);
    }
    add(numbers, options);
}

void LongRun::add(const QList<int> &numbers, const CompressionOptions &options)
{
    const auto added = QObject::connect(&m_queue, &CompressionQueue::tasksAdded, &m_loop,
                                        [this](qsizetype first, qsizetype count) {
                                            for (qsizetype i = first; i < first + count; ++i) {
                                                Picture &picture = at(numberOf(m_queue.tasks()[i]));
                                                picture.task = m_queue.tasks()[i].id;
                                                picture.status = m_queue.tasks()[i].status.index();
                                                ++picture.asked;
                                                ++m_open;
                                            }
                                        });
    QList<QUrl> urls;
    for (const int number : numbers)
        urls.append(QUrl::fromLocalFile(sourcePath(number)));
    m_queue.addFiles(urls, options);
    QObject::disconnect(added);
}

CompressionOptions LongRun::anyOptions()
{
    CompressionOptions options;
    options.outputDestination = OutputDestination(dice(3));
    if (dice(2) == 0)
        options.customFolderURL = QUrl::fromLocalFile(m_folder.filePath(u"out"_s));
    options.convertEnabled = dice(3) == 0;
    options.convertFormat = ImageFormat(dice(4));
    options.resizeEnabled = dice(4) == 0;
    options.resizeWidth = 1 + dice(100);
    options.preserveCopyright = dice(4) == 0;
    return options;
}

/// Of one that has ended.
void LongRun::retry(int number)
{
    Picture &picture = at(number);
    if (!picture.exists && dice(2) == 0) {
        picture.generation = 0;
        picture.exists = put(sourcePath(number), NumberedPicture{number}.bytes());
    }
    std::erase(m_ended, number);
    ++picture.asked;
    ++m_open;
    ++retries;
    m_queue.retryTask(picture.task, anyOptions());
}

/// Unless an upload's answer would then meet an index that is no more, which ends the program.
void LongRun::clear()
{
    qsizetype kept = 0;
    for (const CompressionTask &task : m_queue.tasks())
        kept += hasEnded(task.status) ? 0 : 1;
    for (const qsizetype index : std::as_const(m_running)) {
        if (index >= kept)
            return;
    }
    ++clears;
    clearsWhileRunning += m_running.isEmpty() ? 0 : 1;
    m_queue.clearCompleted();
}

void LongRun::removeSource(int number)
{
    at(number).exists = false;
    QFile::remove(sourcePath(number));
}

void LongRun::retryMistaken()
{
    QList<int> numbers;
    for (const CompressionTask &task : m_queue.tasks()) {
        if (!hasEnded(task.status))
            numbers.append(numberOf(task));
    }
    for (const int number : std::as_const(numbers)) {
        if (complaints.isEmpty())
            retry(number);
    }
    while (complaints.isEmpty() && !isIdle()) {
        m_loop.enterLoop(longestWait);
        if (m_loop.timeout())
            complaints.append(u"Nothing has ended for long."_s);
    }
}

} // namespace pixpress::test
