// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/longrun.h"

#include "pipeline/queueoftest.h"

#include <QDirIterator>

using namespace Qt::StringLiterals;

// The part of the long run that keeps the books.
namespace pixpress::test {

namespace {

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

template <typename Case>
const size_t indexOf = TaskStatus(Case{}).index();

bool hasEnded(size_t status)
{
    return status == indexOf<status::Completed> || status == indexOf<status::Failed>;
}

} // namespace

int LongRun::numberOf(const CompressionTask &task)
{
    return task.fileName.left(6).toInt();
}

void LongRun::complain(int number, const QString &what)
{
    complaints.append(u"Picture %1: %2"_s.arg(number).arg(what));
}

void LongRun::follow(qsizetype index)
{
    const CompressionTask &task = m_queue.tasks()[index];
    const int number = numberOf(task);
    Picture &picture = at(number);
    const size_t now = task.status.index();
    const size_t before = std::exchange(picture.status, now);
    if (before == now) // other options
        return;

    if (now == indexOf<status::Uploading>) {
        begin(number, index);
    } else if (now == indexOf<status::Downloading> && before != indexOf<status::Compressing>) {
        // The list was cleared while another task was sent, which stood here before.
        ++mistaken;
        if (clearsWhileRunning == 0)
            complain(number, u"It shows as downloading without having been sent."_s);
        if (before == indexOf<status::Pending>) {
            --picture.asked; // it is taken for started and never will be
            --m_open;
        }
        std::erase(m_ended, number);
    } else if (hasEnded(now)) {
        end(number, task);
    }
}

void LongRun::begin(int number, qsizetype index)
{
    Picture &picture = at(number);
    ++picture.runs;
    picture.uploadsAtStart = m_service.uploads(number);
    picture.readable = picture.exists;
    m_running.insert(number, index);
    if (m_running.size() > 3)
        complain(number, u"It is the fourth at a time."_s);
}

Fault LongRun::expectedFault(int number, const CompressionOptions &options) const
{
    const Fault fault = planned(m_seed, number, m_service.uploads(number));
    const bool ofService =
        static_cast<int>(fault) >= firstFault && static_cast<int>(fault) < firstDiskFault;
    if (!m_pictures.at(static_cast<size_t>(number)).readable)
        return Fault::sourceGone;
    if (ofService)
        return fault;
    if (options.outputDestination != OutputDestination::customFolder)
        return Fault::none;
    const QString folder = options.customFolderURL.value_or(QUrl()).fileName();
    return folder == u"gone"        ? Fault::noFolder
           : folder == u"file"      ? Fault::fileForFolder
           : folder == u"read-only" ? Fault::readOnlyFolder
                                    : Fault::none;
}

void LongRun::end(int number, const CompressionTask &task)
{
    Picture &picture = at(number);
    if (!m_running.remove(number))
        complain(number, u"It has ended without having run."_s);
    m_ended.push_back(number);
    --m_open;
    m_loop.exitLoop();

    const Fault fault = expectedFault(number, task.options);
    const QString expected = sentence(fault, task.fileName);
    if (const auto *failed = std::get_if<status::Failed>(&task.status)) {
        // Nobody can tell whose connection it was that the service ended at once.
        const bool refused =
            m_service.connectionsRefused > m_refusedSeen &&
            failed->error == sentence(Fault::lostAfterUpload, {}) &&
            (failed->error != expected || m_service.uploads(number) == picture.uploadsAtStart);
        m_refusedSeen += refused ? 1 : 0;
        ++failures[refused ? u"dropped before the request"_s : QLatin1StringView(name(fault))];
        checkUploads(number, refused);
        if (!refused && failed->error != expected)
            complain(number, u"It failed with \"%1\" instead of \"%2\" (%3)."_s.arg(
                                 failed->error, expected, QLatin1StringView(name(fault))));
    } else if (const auto *done = std::get_if<status::Completed>(&task.status)) {
        ++completed;
        checkUploads(number, false);
        if (!expected.isEmpty())
            complain(number, u"It is completed in spite of: "_s + QLatin1StringView(name(fault)));
        checkOutput(number, task, done->result);
    }
}

/// One run is one upload.
void LongRun::checkUploads(int number, bool refused)
{
    const Picture &picture = at(number);
    const int uploads = m_service.uploads(number) - picture.uploadsAtStart;
    if (picture.readable ? uploads > 1 || (uploads == 0 && !refused) : uploads > 0)
        complain(number, u"It was sent %1 times in one run."_s.arg(uploads));
}

void LongRun::checkOutput(int number, const CompressionTask &task, const CompressionResult &result)
{
    const NumberedPicture output{.number = number, .generation = m_service.uploads(number)};
    const QString path = result.outputURL.toLocalFile();
    const QByteArray bytes = output.bytes();
    if (contentOf(path) != bytes || result.compressedSize != bytes.size())
        complain(number, u"Its output is not complete: "_s + path);
    if (path == sourcePath(number)) {
        Picture &picture = at(number);
        const bool free = !picture.exists; // then that is the first free name of a copy
        if (task.options.outputDestination != OutputDestination::overwrite && !free)
            complain(number, u"Its source was replaced."_s);
        picture.exists = true;
        picture.generation = output.generation;
        return;
    }
    if (task.options.outputDestination != OutputDestination::overwrite && m_outputs.contains(path))
        complain(number, u"It replaced an output: "_s + path);
    m_outputs.insert(path, output);
}

void LongRun::afterRemoval()
{
    int gone = 0;
    for (int number = 0; number < m_added; ++number) {
        Picture &picture = at(number);
        if (picture.task.isNull() || m_queue.indexOf(picture.task) >= 0)
            continue;
        if (!hasEnded(picture.status))
            complain(number, u"It was cleared before it had ended."_s);
        std::erase(m_ended, number);
        picture.task = {};
        ++gone;
    }
    cleared += gone;
}

void LongRun::checkAll()
{
    for (int number = 0; number < m_added; ++number) {
        const Picture &picture = at(number);
        if (!hasEnded(picture.status))
            complain(number, u"It never ended."_s);
        if (picture.runs != picture.asked)
            complain(number,
                     u"It ran %1 times instead of %2."_s.arg(picture.runs).arg(picture.asked));
        if (picture.exists)
            m_outputs.insert(sourcePath(number), {number, picture.generation});
    }
    if (cleared + tasksListed() != m_added)
        complaints.append(u"A task is lost."_s);
    if (m_queue.hasActiveTasks() || m_queue.activeTasks() != 0 || !m_running.isEmpty())
        complaints.append(u"Something still runs."_s);
    if (m_service.damagedUploads > 0)
        complaints.append(u"Uploads were not whole."_s);

    QDirIterator entries(m_folder.path(), QDir::Files | QDir::Hidden | QDir::System,
                         QDirIterator::Subdirectories);
    qsizetype found = 0;
    while (entries.hasNext()) {
        const QString path = entries.next();
        if (path == m_folder.filePath(u"file"_s) && contentOf(path) == "x")
            continue;
        ++found;
        const auto expected = m_outputs.constFind(path);
        if (expected == m_outputs.cend())
            complaints.append(u"This file should not be: "_s + path);
        else if (NumberedPicture::fromWhole(contentOf(path)) != *expected)
            complaints.append(u"This file is damaged: "_s + path);
    }
    if (found != m_outputs.size())
        complaints.append(u"%1 files are missing."_s.arg(m_outputs.size() - found));
}

} // namespace pixpress::test
