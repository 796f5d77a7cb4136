// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace pixpress::test {

struct Outcome
{
    int status = -1; ///< -1 when the program did not come to its end.
    QByteArray out;
    QByteArray err;
};

/// The real program, to be run as a process in a folder and with a home of the test's own.
class Program
{
public:
    Outcome run(const QStringList &arguments, const QStringList &environment = {}) const;

    /// For running it in another way.
    static QString file() { return QStringLiteral(PIXPRESS_CLI); }
    void prepare(QProcess &process, const QStringList &environment = {}) const;

    /// Puts a picture of samples/ into the folder.
    void copySample(const QString &sample, const QString &name) const;

    QString path(const QString &name) const { return m_folder.filePath(name); }
    QByteArray content(const QString &name) const;
    QStringList files() const { return QDir(m_folder.path()).entryList(QDir::Files); }
    QString home() const { return m_home.path(); }

private:
    QTemporaryDir m_home;
    QTemporaryDir m_folder;
};

} // namespace pixpress::test
