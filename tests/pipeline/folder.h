// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

#include <expected>
#include <memory>
#include <sys/stat.h>

namespace pixpress::test {

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;

/// A folder that each test of a class has for itself.
class FolderOfTest
{
protected:
    void makeFolder();
    void removeFolder();

    QString path(const QString &name) const { return m_folder->filePath(name); }
    QUrl url(const QString &name) const { return QUrl::fromLocalFile(path(name)); }
    QByteArray content(const QString &name) const;
    QStringList names() const;

    void put(const QString &name, const QByteArray &content = "x") const;
    /// Lets users other than root into the folder.
    void openToOthers(bool writable = false) const;
    /// Makes something that is no regular file; returns its path.
    QString makeNoFile(const QString &kind, const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

/// A table of the kinds for makeNoFile().
void addKindsOfNoFile();

/// The same for the same arguments.
QByteArray bytes(qsizetype size, int seed = 1);

struct stat statusOf(const QString &path);

/// The sentence of an error, or a word that no error has.
template <typename T>
QString sentence(const std::expected<T, QString> &result)
{
    return result ? QStringLiteral("no error") : result.error();
}

} // namespace pixpress::test
