// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/folder.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

bool makeSocket(const QString &path)
{
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::copy_n(name.constData(), std::min<size_t>(size_t(name.size()), 107), address.sun_path);
    const bool made = bind(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    close(descriptor);
    return made;
}

} // namespace

void FolderOfTest::makeFolder()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void FolderOfTest::removeFolder()
{
    // Nobody may be locked out from removing it.
    QVERIFY(QFile::setPermissions(m_folder->path(), ownerOnly | QFile::ExeOwner));
    m_folder.reset();
}

void FolderOfTest::put(const QString &name, const QByteArray &content) const
{
    QVERIFY(QDir().mkpath(QFileInfo(path(name)).absolutePath()));
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

QByteArray FolderOfTest::content(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

QStringList FolderOfTest::names() const
{
    return QDir(m_folder->path())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                   QDir::Name);
}

void FolderOfTest::openToOthers(bool writable) const
{
    QFile::Permissions permissions =
        ownerOnly | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
    permissions.setFlag(QFile::WriteOther, writable);
    QVERIFY(QFile::setPermissions(m_folder->path(), permissions));
}

QString FolderOfTest::makeNoFile(const QString &kind, const QString &name) const
{
    const QString path = this->path(name);
    if (kind == u"endless zeros")
        return u"/dev/zero"_s;
    if (kind == u"nothing at all")
        return u"/dev/null"_s;
    if (kind == u"folder" && QDir().mkdir(path))
        return path;
    if (kind == u"pipe" && mkfifo(qPrintable(path), 0666) == 0)
        return path;
    if (kind == u"socket" && makeSocket(path))
        return path;
    if (kind == u"link to a folder" && QDir().mkdir(this->path(u"elsewhere"_s)) &&
        QFile::link(this->path(u"elsewhere"_s), path))
        return path;
    if (kind == u"link to a pipe" && mkfifo(qPrintable(this->path(u"pipe"_s)), 0666) == 0 &&
        QFile::link(u"pipe"_s, path))
        return path;
    if (kind == u"link to endless zeros" && QFile::link(u"/dev/zero"_s, path))
        return path;
    return {};
}

void addKindsOfNoFile()
{
    QTest::addColumn<QString>("kind");
    for (const auto *kind : {"folder", "pipe", "socket", "link to a folder", "link to a pipe",
                             "link to endless zeros", "endless zeros", "nothing at all"})
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

QByteArray bytes(qsizetype size, int seed)
{
    QByteArray result(size, Qt::Uninitialized);
    quint32 state = 2654435761U * quint32(seed);
    for (char &byte : result) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24);
    }
    return result;
}

struct stat statusOf(const QString &path)
{
    struct stat status{};
    lstat(qPrintable(path), &status);
    return status;
}

} // namespace pixpress::test
