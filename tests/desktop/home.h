// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QJsonObject>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace pixpress::test {

/// A home folder that is gone afterwards: files, settings and commands of a test's own.
class Home
{
public:
    Home();

    bool isValid() const { return m_folder.isValid(); }
    /// Nothing but this home and the commands of the system.
    QProcessEnvironment environment() const;

    /// In a folder for files, which is in the home folder.
    QString path(const QString &name) const;
    /// A copy of one of the project's own pictures. Its path.
    QString sample(const QString &sample, const QString &name) const;
    QString file(const QString &name, const QByteArray &content) const;
    QStringList fileNames() const;
    /// Bytes; 0 when there is no such file.
    qint64 size(const QString &name) const;
    QString settingsPath(const QString &application) const;
    QJsonObject settings(const QString &application) const;
    void store(const QString &application, const QJsonObject &settings) const;
    /// Makes a command that comes before all others of its name: a shell script.
    void command(const QString &name, const QByteArray &script) const;
    /// Makes a configuration file. Its path.
    QString configure(const QString &name, const QByteArray &content) const;

private:
    QTemporaryDir m_folder;
};

} // namespace pixpress::test
