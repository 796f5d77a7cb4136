// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QUrl>

#include <stdexcept>
#include <vector>

/// What the benchmarks share. They give up by throwing Failure, so that servers and
/// temporary files are gone when the program ends.
namespace bench {

struct Failure : std::runtime_error
{
    explicit Failure(const QString &message) : std::runtime_error(message.toStdString()) {}
};

/// The same thing measured several times.
class Samples
{
public:
    void add(double value) { m_values.push_back(value); }
    double median() const;
    double largest() const;
    QString range() const; ///< The smallest and the largest, for people.

private:
    std::vector<double> m_values;
};

struct Row
{
    QString name;
    double ours = 0;
    double yardstick = 0;
    QString unit;     ///< One that ends in "/s" makes `limit` a minimum, else it is a maximum.
    double limit = 0; ///< Of ours / yardstick.
};

/// One line of JSON on the standard output.
void print(const Row &row);
/// Something worth knowing about the rows, for people; on the standard output too.
void note(const QString &text);

/// Where files lie: on the disk, or in memory if the system has room there. There the file system
/// takes little time, and always the same: a disk may be slow for minutes after files were removed.
enum class Medium { disk, memory };

/// A folder that is removed with what is in it.
class Workplace
{
public:
    /// Fails when there is less room than this many bytes.
    Workplace(Medium medium, qint64 neededBytes);

    QString path(const QString &name) const { return m_folder.filePath(name); }
    /// Makes a file of bytes that do not repeat within any block of the file system.
    QUrl makeFile(const QString &name, qint64 size) const;

private:
    QTemporaryDir m_folder;
};

/// bench_server, in a process of its own that ends with this object.
class Server
{
public:
    Server();
    ~Server();

    QUrl url() const { return m_url; }

private:
    QProcess m_process;
    QUrl m_url;
};

/// Runs this program once more with the arguments; the words that it printed.
QList<QByteArray> runAgain(const QStringList &arguments);

/// A field of this process's memory statistics, such as "VmHWM", in bytes.
qint64 memoryFigure(const QByteArray &name);

} // namespace bench
