// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/settingsfile.h"

#include "pipeline/descriptor.h"
#include "pipeline/newfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

using namespace Qt::StringLiterals;

namespace pixpress::settingsfile {

namespace {

constexpr qint64 largestFile = 16 << 20;
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

/// Begins the new entries where they follow the old ones. No JSON text contains it.
constexpr char recordSeparator = '\x1e';

struct Content
{
    QJsonObject entries;
    bool isSettings = true;
    QByteArray bytes = {}; ///< All that the file holds.
};

std::unexpected<QString> failure(const QString &what)
{
    return std::unexpected(what);
}

std::unexpected<QString> failure(int error)
{
    return std::unexpected(Descriptor::describe(error) + u'.');
}

/// The newest entries that are there as a whole; see store().
Content parse(const QByteArray &bytes)
{
    if (const qsizetype mark = bytes.lastIndexOf(recordSeparator); mark >= 0) {
        const QJsonDocument newest = QJsonDocument::fromJson(bytes.sliced(mark + 1));
        if (newest.isObject() && bytes.endsWith('\n'))
            return {.entries = newest.object(), .bytes = bytes};
    }
    // What follows did not reach the disk as a whole.
    const auto *const end = std::ranges::find_if(
        bytes, [](char byte) { return byte == recordSeparator || byte == '\0'; });
    const QByteArray first = bytes.first(end - bytes.begin()).trimmed();
    const QJsonDocument json = QJsonDocument::fromJson(first);
    return {
        .entries = json.object(), .isSettings = json.isObject() || first.isEmpty(), .bytes = bytes};
}

std::expected<Content, QString> load(Descriptor &file)
{
    const auto status = file.status();
    if (!status)
        return failure(status.error());
    if (status->st_size > largestFile)
        return failure(u"It is too large."_s);
    const auto bytes = file.readAll();
    if (!bytes)
        return failure(bytes.error());
    return parse(*bytes);
}

/// Empty when it cannot be read.
QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Keeps what is no settings: a key may be in it, that a slip in an editor has made unreadable;
/// also beside what was kept before.
bool putAside(const QString &path, const QByteArray &content)
{
    QString aside = path + u".unreadable"_s;
    for (int number = 2; QFileInfo(aside).isFile() && contentOf(aside) != content; ++number)
        aside = u"%1.unreadable-%2"_s.arg(path).arg(number);
    const auto copy = [&content](Descriptor &file) -> Descriptor::Result<> {
        if (fchmod(file.get(), ownerOnly) != 0)
            return std::unexpected(errno);
        qint64 written = 0;
        return file.writeAll(content, written);
    };
    if (!QFileInfo(aside).isFile() && !makeFile(aside, copy))
        return false;
    qWarning(R"(The settings in "%s" are damaged. What was there is in "%s" now.)",
             qUtf8Printable(path), qUtf8Printable(aside));
    return true;
}

/// Replaces the entries so that the file holds either the old or the new ones as a whole at every
/// moment, and no other file ever holds any: the new ones are first put behind the old ones, and
/// only when they are on the disk in the place of these.
Descriptor::Result<> store(Descriptor &file, qint64 size, const QJsonObject &entries)
{
    const QByteArray text = QJsonDocument(entries).toJson();
    const qint64 behind = std::max(size, static_cast<qint64>(text.size()));
    qint64 written = 0;
    auto stored = file.writeAll(recordSeparator + text, written, behind);
    if (stored)
        stored = file.sync();
    if (!stored) {
        (void)file.resize(size);
        return stored;
    }
    // They are stored now. If the rest fails the file is merely longer than it need be.
    if (file.writeAll(text, written) && file.sync() && file.resize(text.size()))
        (void)file.sync();
    return {};
}

bool isNoFile(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile(); // Opening a pipe would wake its reader.
}

/// Opens the file, which is made when it is not there, for no other copy to write meanwhile.
std::expected<Descriptor, QString> openAlone(const QString &path)
{
    if (isNoFile(path))
        return failure(Descriptor::notAFile);
    for (int attempt = 0; attempt < 10; ++attempt) {
        const bool isNew = !QFileInfo::exists(path);
        auto file = Descriptor::open(path, O_RDWR | O_CREAT, ownerOnly);
        if (!file)
            return failure(file.error());
        if (!file->lock(LOCK_EX))
            return failure(u"Another program is writing it."_s);
        if (!file->isAt(path)) // An editor has put another file in its place.
            continue;
        if (fchmod(file->get(), ownerOnly) != 0)
            return failure(errno);
        if (isNew) {
            const QString folder = QFileInfo(QFileInfo(path).canonicalFilePath()).path();
            if (const auto synced = Descriptor::syncFolder(folder, *file); !synced)
                return failure(synced.error());
        }
        return *std::move(file);
    }
    return failure(u"Another program keeps replacing it."_s);
}

} // namespace

std::expected<QJsonObject, QString> read(const QString &path, std::chrono::milliseconds wait)
{
    if (isNoFile(path))
        return failure(Descriptor::notAFile);
    auto file = Descriptor::open(path, O_RDONLY);
    if (!file && file.error() == ENOENT)
        return QJsonObject();
    if (!file)
        return failure(file.error());
    if (!file->lock(LOCK_SH, wait))
        return failure(u"Another program is writing it."_s);
    auto content = load(*file);
    if (!content)
        return failure(content.error());
    return std::move(content->entries);
}

std::expected<QJsonObject, QString> merge(const QString &path, const QJsonObject &changes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    auto file = openAlone(path);
    if (!file)
        return failure(file.error());
    auto content = load(*file);
    if (!content)
        return failure(content.error());
    if (!content->isSettings && !putAside(path, content->bytes))
        return failure(u"It holds something else, of which no copy could be made."_s);
    QJsonObject entries = content->entries;
    for (auto change = changes.begin(); change != changes.end(); ++change)
        entries.insert(change.key(), change.value());
    if (entries == content->entries && content->isSettings)
        return entries;
    if (const auto stored = store(*file, content->bytes.size(), entries); !stored)
        return failure(stored.error());
    return entries;
}

} // namespace pixpress::settingsfile
