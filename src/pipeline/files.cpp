// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"

#include "pipeline/descriptor.h"
#include "pipeline/outputname.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <optional>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

QString describe(int error)
{
    switch (error) {
    case Descriptor::notAFile:
    case EISDIR:
    case ENXIO: // of a socket
        return u"It is not a regular file"_s;
    case Descriptor::cutShort: return u"It became smaller while it was read"_s;
    default: return qt_error_string(error);
    }
}

/// Of writing. The error is one of Descriptor's; nothing was written when it is EEXIST.
struct Failure
{
    int error = 0;
    QString reason = describe(error);
};

using Outcome = std::expected<void, Failure>;

std::unexpected<QString> sentence(const QString &verb, const QUrl &url, const QString &reason)
{
    return std::unexpected(
        u"Could not %1 \"%2\": %3."_s.arg(verb, QFileInfo(url.toLocalFile()).fileName(), reason));
}

const QString notRestored = u", and its old content could not be put back completely"_s;

Outcome toOutcome(const Descriptor::Result<> &result)
{
    if (!result)
        return std::unexpected(Failure{result.error()});
    return {};
}

/// The file that a symbolic link makes when it is written to, or nothing when `path` is no link or
/// one to something that is there.
QString dangling(const QString &path)
{
    QFileInfo info(path);
    if (info.exists())
        return {};
    for (int links = 0; links < 40 && info.isSymLink(); ++links)
        info.setFile(info.symLinkTarget());
    return info.isSymLink() || info.filePath() == path ? QString() : info.filePath();
}

/// Replaces the content of an open file. The data has reached the disk when this succeeds: until
/// then an existing picture has only its copy in memory. `touched`: whether anything changed.
Descriptor::Result<> replaceContent(Descriptor &file, const QByteArray &bytes, bool &touched)
{
    qint64 done = 0;
    const auto written = file.writeAll(bytes, done);
    touched = done > 0;
    if (!written)
        return written;
    if (const auto resized = file.resize(bytes.size()); !resized)
        return resized;
    touched = true;
    return file.sync();
}

Outcome overwrite(const QString &path, const QByteArray &bytes)
{
    // Some devices do something when they are opened.
    if (const QFileInfo info(path); info.exists() && !info.isFile())
        return std::unexpected(Failure{Descriptor::notAFile});
    auto file = Descriptor::open(path, O_RDWR);
    if (!file)
        return std::unexpected(Failure{file.error()});

    const auto old = file->readAll();
    if (!old && old.error() == Descriptor::notAFile)
        return std::unexpected(Failure{old.error()});
    if (!old)
        return std::unexpected(Failure{EIO, u"Its present content could not be kept safe"_s});

    bool touched = false;
    auto written = file->reserve(bytes.size());
    if (written)
        written = replaceContent(*file, bytes, touched);
    if (written)
        return {};

    Failure failure{written.error()};
    const bool restored = touched ? replaceContent(*file, *old, touched).has_value()
                                  : file->resize(old->size()).has_value();
    if (!restored)
        failure.reason += notRestored;
    return std::unexpected(failure);
}

Outcome taken()
{
    return std::unexpected(Failure{EEXIST});
}

/// Closes what was written; removes it when the disk reports an error only now.
Outcome finish(Descriptor &file, const QString &path)
{
    const auto closed = file.close();
    if (!closed)
        QFile::remove(path);
    return toOutcome(closed);
}

/// The file has its name only when it is whole: whenever the process is killed, nothing is half
/// done. Returns nothing where files cannot be made in this way.
std::optional<Outcome> makeUnnamed(const QString &path, const QByteArray &bytes)
{
    auto file = Descriptor::openUnnamed(QFileInfo(path).path());
    if (!file)
        return std::nullopt;
    qint64 done = 0;
    if (const auto written = file->writeAll(bytes, done); !written)
        return toOutcome(written);
    if (const auto named = file->giveName(path); !named)
        return named.error() == EEXIST ? std::optional(taken()) : std::nullopt;
    return finish(*file, path);
}

Outcome makeNamed(const QString &path, const QByteArray &bytes)
{
    auto file = Descriptor::open(path, O_WRONLY | O_CREAT | O_EXCL);
    if (!file)
        return std::unexpected(Failure{file.error()});
    qint64 done = 0;
    if (const auto written = file->writeAll(bytes, done); !written) {
        QFile::remove(path);
        return toOutcome(written);
    }
    return finish(*file, path);
}

Outcome make(const QString &path, const QByteArray &bytes)
{
    if (const QFileInfo info(path); info.isSymLink() || info.exists())
        return taken(); // Both ways would find out too, one of them only after writing.
    const auto made = makeUnnamed(path, bytes);
    return made ? *made : makeNamed(path, bytes);
}

/// Makes a file that is not there yet. Of one that cannot be written whole nothing remains.
Outcome writeNew(const QString &path, const QByteArray &bytes)
{
    Outcome written = make(path, bytes);
    if (!written && written.error().error == EEXIST) {
        if (const QString made = dangling(path); !made.isEmpty())
            written = make(made, bytes);
    }
    return written;
}

} // namespace

std::expected<QByteArray, QString> readFile(const QUrl &source)
{
    auto file = Descriptor::open(source.toLocalFile(), O_RDONLY);
    if (!file)
        return sentence(u"read"_s, source, describe(file.error()));
    auto content = file->readAll();
    if (!content)
        return sentence(u"read"_s, source, describe(content.error()));
    return *std::move(content);
}

std::expected<QUrl, QString> writeOutput(const QUrl &source, const CompressionOptions &options,
                                         const QByteArray &bytes)
{
    const OutputName name(source, options);
    if (name.replaces()) {
        if (auto written = writeFile(name.url(), bytes); !written)
            return std::unexpected(written.error());
        return name.url();
    }
    for (int number = 0;; ++number) {
        QUrl target = name.url(number);
        const auto written = writeNew(target.toLocalFile(), bytes);
        if (written)
            return target;
        if (written.error().error != EEXIST)
            return sentence(u"write"_s, target, written.error().reason);
    }
}

std::expected<void, QString> writeFile(const QUrl &target, const QByteArray &bytes)
{
    const QString path = target.toLocalFile();
    Outcome written = writeNew(path, bytes);
    if (!written && written.error().error == EEXIST)
        written = overwrite(path, bytes);
    if (!written)
        return sentence(u"write"_s, target, written.error().reason);
    return {};
}

} // namespace pixpress
