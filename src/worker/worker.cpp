// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/worker.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

QString defaultProgram()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           u"/../libexec/pixpress/pixpress-worker"_s);
}

WorkerConfig withDefaults(WorkerConfig config)
{
    if (config.program.isEmpty())
        config.program = defaultProgram();
    return config;
}

/// The worker's end becomes its standard input. It has no terminal, inherits no other open file,
/// and is not in the terminal's process group: Ctrl-C is for the program that uses it.
int spawnProcess(const QByteArray &program, int socket, pid_t &process)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, socket, STDIN_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);

    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);

    QByteArray name = program;
    char *const arguments[] = {name.data(), nullptr};
    const int error =
        posix_spawn(&process, program.constData(), &actions, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

bool isCompression(const auto &entry)
{
    return std::holds_alternative<CompressRequest>(entry.second.request.work);
}

} // namespace

Worker::Worker(WorkerConfig config) : m_config(withDefaults(std::move(config)))
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Worker::onTimeout);
}

Worker::~Worker()
{
    stop();
}

void Worker::start()
{
    if (const auto running = ensureRunning(); !running)
        qWarning("%s", qUtf8Printable(running.error()));
}

quint64 Worker::compress(const QByteArray &picture, const CompressionOptions &options,
                         Callback<Compressed> callback)
{
    return add(CompressRequest{options}, sealedMemory(picture), m_config.compressLimit,
               std::move(callback));
}

quint64 Worker::makeThumbnail(int picture, int longerSide, Callback<Thumbnail> callback)
{
    FileDescriptor copy = FileDescriptor::duplicate(picture);
    const int error = errno;
    return add(ThumbnailRequest{longerSide},
               copy.isOpen() ? std::expected<FileDescriptor, int>(std::move(copy))
                             : std::unexpected(error),
               m_config.thumbnailLimit, std::move(callback));
}

template <typename T>
quint64 Worker::add(decltype(Request::work) work, std::expected<FileDescriptor, int> picture,
                    std::chrono::milliseconds limit, Callback<T> callback)
{
    const quint64 id = ++m_lastId;
    auto onAnswer = [callback = std::move(callback)](std::expected<Answer, QString> answer) {
        if (!answer)
            callback(std::unexpected(answer.error()));
        else if (const auto *failed = std::get_if<Failed>(&answer->result))
            callback(std::unexpected(failed->reason));
        else
            callback(std::get<T>(std::move(answer->result)));
    };
    const auto job = m_waiting
                         .emplace(id, Job{.request = {.id = id, .work = work, .picture = {}},
                                          .callback = std::move(onAnswer),
                                          .limit = limit})
                         .first;
    if (picture) {
        job->second.request.picture = *std::move(picture);
        dispatch();
    } else {
        m_running.insert(m_waiting.extract(job));
        finish(m_running.find(id),
               std::unexpected(u"The picture could not be passed to pixpress-worker: %1."_s.arg(
                   qt_error_string(picture.error()))));
    }
    return id;
}

void Worker::cancel(quint64 id)
{
    m_waiting.erase(id);
    if (const auto job = m_running.find(id); job != m_running.end())
        job->second.callback = nullptr;
}

std::expected<void, QString> Worker::ensureRunning()
{
    if (m_socket.isOpen())
        return {};
    auto spawned = spawn();
    if (!spawned)
        stop();
    return spawned;
}

std::expected<void, QString> Worker::spawn()
{
    const auto failure = [this](int error) {
        return std::unexpected(
            u"\"%1\" could not be started: %2."_s.arg(m_config.program, qt_error_string(error)));
    };
    auto channel = openChannel();
    if (!channel)
        return failure(channel.error());
    auto &[ours, theirs] = *channel;
    if (const int error =
            spawnProcess(QFile::encodeName(m_config.program), theirs.get(), m_process)) {
        m_process = -1;
        return failure(error);
    }
    m_socket = std::move(ours);
    m_isGreeted = false;
    m_notifier = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &Worker::receive);
    return {};
}

/// Sends what the worker is ready for.
void Worker::dispatch()
{
    const auto isSuspect = [](const auto &entry) { return entry.second.isSuspect; };
    while (!m_waiting.empty() && std::ranges::none_of(m_running, isSuspect)) {
        auto job = std::ranges::find_if(m_waiting, isSuspect);
        if (job != m_waiting.end() && !m_running.empty())
            break;
        if (job == m_waiting.end()) {
            job = std::ranges::find_if(m_waiting, [this](const auto &entry) {
                return !m_isFull || !isCompression(entry);
            });
        }
        if (job == m_waiting.end())
            break;
        const auto running = ensureRunning();
        if (running && !send(job->second))
            break;
        const auto begun = m_running.insert(m_waiting.extract(job)).position;
        if (!running)
            finish(begun, std::unexpected(running.error()));
    }
    watchDeadlines();
}

/// False if it has to be sent later: the socket is full, or its other end has just closed.
bool Worker::send(Job &job)
{
    job.deadline.setRemainingTime(job.limit);
    return job.request.send(m_socket.get(), MSG_DONTWAIT).has_value();
}

void Worker::finish(Jobs::iterator job, std::expected<Answer, QString> answer)
{
    auto ended = m_running.extract(job);
    if (auto &callback = ended.mapped().callback) {
        QMetaObject::invokeMethod(
            this,
            [callback = std::move(callback), answer = std::move(answer)]() mutable {
                callback(std::move(answer));
            },
            Qt::QueuedConnection);
    }
}

void Worker::receive()
{
    constexpr int most = 64; // so that a flood of packets does not stop the event loop
    for (int count = 0; count < most && m_socket.isOpen(); ++count) {
        const auto packet = receivePacket(m_socket.get(), MSG_DONTWAIT);
        if (!packet && (packet.error() == EAGAIN || packet.error() == EWOULDBLOCK))
            break;
        if (!packet || packet->bytes.isEmpty() || !accept(*packet))
            onCrash();
    }
    dispatch();
}

/// False if the worker cannot have meant it.
bool Worker::accept(const Packet &packet)
{
    if (!m_isGreeted) {
        const auto greeting = Greeting::parse(packet);
        if (greeting && !greeting->missingLayers.isEmpty())
            qWarning("pixpress-worker runs without %s, which this system does not offer.",
                     qUtf8Printable(greeting->missingLayers.join(u", ")));
        return m_isGreeted = greeting.has_value();
    }
    auto answer = Answer::parse(packet);
    const auto job = answer ? m_running.find(answer->id) : m_running.end();
    if (job == m_running.end())
        return false;
    const bool isCompression = pixpress::isCompression(*job);
    if (std::holds_alternative<Busy>(answer->result)) {
        if (!isCompression || std::ranges::count_if(m_running, [](const auto &entry) {
                                  return pixpress::isCompression(entry);
                              }) < 2)
            return false;
        m_isFull = true;
        m_waiting.insert(m_running.extract(job));
        return true;
    }
    if (std::holds_alternative<Compressed>(answer->result) != isCompression &&
        !std::holds_alternative<Failed>(answer->result))
        return false;
    m_isFull = m_isFull && !isCompression;
    finish(job, *std::move(answer));
    return true;
}

void Worker::onCrash()
{
    stop();
    m_isFull = false;
    if (m_running.size() == 1) {
        const QString reason = m_isGreeted
                                   ? u"The picture could not be processed: decoding it crashed."_s
                                   : u"\"%1\" ended before it was ready."_s.arg(m_config.program);
        return finish(m_running.begin(), std::unexpected(reason));
    }
    while (!m_running.empty()) {
        auto job = m_running.extract(m_running.begin());
        job.mapped().isSuspect = true;
        if (job.mapped().callback)
            m_waiting.insert(std::move(job));
    }
}

void Worker::onTimeout()
{
    stop();
    m_isFull = false;
    const auto guilty = std::ranges::min_element(
        m_running, {}, [](const auto &entry) { return entry.second.deadline; });
    if (guilty != m_running.end()) {
        finish(guilty, std::unexpected(u"Processing the picture took more than %1 seconds."_s.arg(
                           std::chrono::ceil<std::chrono::seconds>(guilty->second.limit).count())));
    }
    m_waiting.merge(m_running);
    dispatch();
}

void Worker::watchDeadlines()
{
    if (m_running.empty())
        return m_timer.stop();
    qint64 earliest = std::numeric_limits<qint64>::max();
    for (const auto &[id, job] : m_running)
        earliest = std::min(earliest, job.deadline.remainingTime());
    m_timer.start(std::chrono::milliseconds(earliest));
}

void Worker::stop()
{
    m_notifier.reset();
    m_socket = FileDescriptor();
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    m_process = -1;
}

} // namespace pixpress
