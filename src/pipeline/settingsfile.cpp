// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settingsfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QLockFile>
#include <QSaveFile>

#include <chrono>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace pixpress::settingsfile {

namespace {

constexpr auto ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr qint64 largestFile = 16 << 20;
constexpr auto longestWait = 5s; // for another copy that is writing
/// One that is killed as it takes the lock may leave one that names nobody. It counts no longer.
constexpr auto longestHeld = 3s;

struct Content
{
    QJsonObject entries;
    bool isSettings = true;
};

std::unexpected<QString> failure(const QString &what)
{
    return std::unexpected(what);
}

std::expected<Content, QString> load(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists()) // a dangling link neither
        return Content{};
    if (!info.isFile()) // opening a pipe would wait for a writer
        return failure(u"It is not a regular file."_s);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return failure(file.errorString() + u'.');
    if (file.size() > largestFile)
        return failure(u"It is too large."_s);
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return failure(file.errorString() + u'.');
    const QJsonDocument json = QJsonDocument::fromJson(bytes);
    return Content{.entries = json.object(), .isSettings = json.isObject() || bytes.isEmpty()};
}

/// Empty when it cannot be read.
QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Keeps what is no settings: a key may be in it, that a slip in an editor has made unreadable;
/// also beside what was kept before.
bool putAside(const QString &path)
{
    QString aside = path + u".unreadable"_s;
    const QByteArray content = contentOf(path);
    for (int number = 2; QFileInfo(aside).isFile() && contentOf(aside) != content; ++number)
        aside = u"%1.unreadable-%2"_s.arg(path).arg(number);
    if (!QFileInfo(aside).isFile() && !QFile::copy(path, aside)) // copies the permissions too
        return false;
    qWarning(R"(The settings in "%s" are damaged. What was there is in "%s" now.)",
             qUtf8Printable(path), qUtf8Printable(aside));
    return true;
}

/// Replaces the file as a whole, through a link if it is one.
std::expected<void, QString> store(const QString &path, const QJsonObject &entries)
{
    // The new file gets the permissions that the old one has, so that one must exist with the right
    // ones before: at no moment is there a file with the key that others can read.
    if (QFile old(path); !old.open(QIODevice::WriteOnly | QIODevice::NewOnly, ownerOnly))
        old.setPermissions(ownerOnly);
    QSaveFile file(path);
    const QByteArray bytes = QJsonDocument(entries).toJson();
    // Flushed here: QSaveFile of Qt 6.4 does not notice a full disk while it commits.
    if (!file.open(QIODevice::WriteOnly) || !file.setPermissions(ownerOnly) ||
        file.write(bytes) != bytes.size() || !file.flush() || !file.commit())
        return failure(file.errorString() + u'.');
    return {};
}

QString reason(const QLockFile &lock)
{
    return lock.error() == QLockFile::LockFailedError ? u"Another program is writing it."_s
                                                      : u"A file could not be made beside it."_s;
}

} // namespace

std::expected<QJsonObject, QString> read(const QString &path)
{
    auto content = load(path);
    if (!content)
        return failure(content.error());
    return std::move(content->entries);
}

std::expected<QJsonObject, QString> merge(const QString &path, const QJsonObject &changes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QLockFile lock(path + u".lock"_s);
    lock.setStaleLockTime(longestHeld);
    if (!lock.tryLock(longestWait))
        return failure(reason(lock));

    auto content = load(path);
    if (!content)
        return failure(content.error());
    if (!content->isSettings && !putAside(path))
        return failure(u"It holds something else, of which no copy could be made."_s);
    for (auto change = changes.begin(); change != changes.end(); ++change)
        content->entries.insert(change.key(), change.value());
    if (const auto stored = store(path, content->entries); !stored)
        return failure(stored.error());
    return std::move(content->entries);
}

} // namespace pixpress::settingsfile
