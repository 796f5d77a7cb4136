// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "support.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStorageInfo>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

QString place(Medium medium, qint64 neededBytes)
{
    const QString memory = qEnvironmentVariable("PIXPRESS_BENCH_MEMORY"); // ./bench sets it
    const bool fits = !memory.isEmpty() && QStorageInfo(memory).bytesAvailable() >= neededBytes;
    return medium == Medium::memory && fits ? memory : QDir::tempPath();
}

} // namespace

double Samples::median() const
{
    std::vector<double> sorted = m_values;
    std::ranges::sort(sorted);
    const size_t middle = sorted.size() / 2;
    return sorted.size() % 2 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

double Samples::largest() const
{
    return std::ranges::max(m_values);
}

QString Samples::range() const
{
    const auto [least, most] = std::ranges::minmax(m_values);
    return u"%1 to %2"_s.arg(least, 0, 'g', 4).arg(most, 0, 'g', 4);
}

void print(const Row &row)
{
    std::printf(R"({"name":"%s","ours":%.6g,"yardstick":%.6g,"unit":"%s","ratio":%.4g,"limit":%g})"
                "\n",
                qPrintable(row.name), row.ours, row.yardstick, qPrintable(row.unit),
                row.ours / row.yardstick, row.limit);
    std::fflush(stdout);
}

void note(const QString &text)
{
    std::printf("# %s\n", qPrintable(text));
    std::fflush(stdout);
}

Workplace::Workplace(Medium medium, qint64 neededBytes)
    : m_folder(place(medium, neededBytes) + u"/XXXXXX"_s)
{
    if (!m_folder.isValid())
        throw Failure(u"No temporary folder can be made: "_s + m_folder.errorString());
    const qint64 room = QStorageInfo(m_folder.path()).bytesAvailable();
    if (room < neededBytes)
        throw Failure(u"%1 has room for %2 MB, but %3 MB are needed. Set TMPDIR to a folder "
                      "that has more."_s.arg(m_folder.path())
                          .arg(room / 1'000'000)
                          .arg(neededBytes / 1'000'000));
}

QUrl Workplace::makeFile(const QString &name, qint64 size) const
{
    QByteArray block(64 << 10, Qt::Uninitialized);
    quint32 state = 1;
    std::ranges::generate(block, [&] {
        state = state * 1664525 + 1013904223;
        return static_cast<char>(state >> 24);
    });

    QFile file(path(name));
    bool written = file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    for (qint64 left = size; written && left > 0; left -= block.size())
        written = file.write(block.constData(), std::min<qint64>(left, block.size())) > 0;
    if (!written || !file.flush())
        throw Failure(u"%1 cannot be written: %2"_s.arg(file.fileName(), file.errorString()));
    return QUrl::fromLocalFile(file.fileName());
}

Server::Server()
{
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(QCoreApplication::applicationDirPath() + u"/bench_server"_s, {});
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead())
            throw Failure(u"bench_server does not start: "_s + m_process.errorString());
    }
    m_url.setScheme(u"http"_s);
    m_url.setHost(u"127.0.0.1"_s);
    m_url.setPort(m_process.readLine().trimmed().toInt());
}

Server::~Server()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished();
}

QList<QByteArray> runAgain(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw Failure(u"A run did not succeed: "_s + arguments.join(u' '));
    return process.readAllStandardOutput().simplified().split(' ');
}

qint64 memoryFigure(const QByteArray &name)
{
    QFile file(u"/proc/self/status"_s);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"The system does not tell this process's memory."_s);
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.simplified().split(' ').value(1).toLongLong() * 1024;
    }
    throw Failure(u"The system does not tell %1."_s.arg(QString::fromLatin1(name)));
}

} // namespace bench
