// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

using Outcome = std::expected<void, QString>; // the error is the bare reason

std::unexpected<QString> failure(const QString &verb, const QUrl &url, const QString &reason)
{
    return std::unexpected(
        u"Could not %1 \"%2\": %3."_s.arg(verb, QFileInfo(url.toLocalFile()).fileName(), reason));
}

bool isRegularFile(const QFile &file)
{
    return QFileInfo(file).isFile();
}

const QString notAFile = u"It is not a regular file"_s;

/// What is between the file's position and its end. QFile takes an error that strikes after a part
/// was read for the end of the file; reading on brings it to light.
QByteArray readToEnd(QFile &file)
{
    QByteArray content = file.readAll();
    while (file.error() == QFileDevice::NoError) {
        const QByteArray more = file.readAll();
        if (more.isEmpty())
            break;
        content += more;
    }
    return content;
}

/// Also here QFile keeps silent about an error after a part; writing the rest brings it to light.
bool writeAll(QFile &file, const QByteArray &bytes)
{
    for (qint64 done = 0; done < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

/// Makes sure that the file system has room for `size` bytes of this file, which may grow by that.
Outcome reserve(QFile &file, qint64 size)
{
#if defined(_POSIX_ADVISORY_INFO) && _POSIX_ADVISORY_INFO > 0
    int error = 0;
    do {
        error = size > 0 ? posix_fallocate(file.handle(), 0, size) : 0;
    } while (error == EINTR);
    if (error != 0)
        return std::unexpected(qt_error_string(error));
#else
    const qint64 missing = size - file.size();
    if (missing > 0 &&
        (!file.seek(file.size()) || file.write(QByteArray(missing, '\0')) != missing))
        return std::unexpected(file.errorString());
#endif
    return {};
}

/// Replaces the content of an open file. The data has reached the disk when this succeeds: until
/// then an existing picture has only its copy in memory.
Outcome replaceContent(QFile &file, const QByteArray &bytes)
{
    if (!file.seek(0) || !writeAll(file, bytes) || !file.resize(bytes.size()))
        return std::unexpected(file.errorString());
    if (fsync(file.handle()) != 0)
        return std::unexpected(qt_error_string(errno));
    return {};
}

Outcome writeNew(QFile &file, const QByteArray &bytes)
{
    Outcome written;
    if (!writeAll(file, bytes))
        written = std::unexpected(file.errorString());
    file.close();
    if (written && file.error() != QFileDevice::NoError)
        written = std::unexpected(file.errorString());
    if (!written)
        file.remove();
    return written;
}

Outcome overwrite(QFile &file, const QByteArray &bytes)
{
    if (!isRegularFile(file))
        return std::unexpected(notAFile);
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered))
        return std::unexpected(file.errorString());

    const QByteArray old = readToEnd(file);
    if (file.error() != QFileDevice::NoError || old.size() != file.size())
        return std::unexpected(u"Its present content could not be kept safe"_s);

    if (const Outcome reserved = reserve(file, bytes.size()); !reserved) {
        file.resize(old.size());
        return reserved;
    }
    Outcome written = replaceContent(file, bytes);
    if (!written && !replaceContent(file, old))
        written.error() += u", and its old content could not be put back completely"_s;
    return written;
}

} // namespace

std::expected<QByteArray, QString> readFile(const QUrl &source)
{
    QFile file(source.toLocalFile());
    if (file.exists() && !isRegularFile(file))
        return failure(u"read"_s, source, notAFile);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return failure(u"read"_s, source, file.errorString());
    QByteArray content = readToEnd(file);
    if (file.error() != QFileDevice::NoError)
        return failure(u"read"_s, source, file.errorString());
    return content;
}

QUrl outputURL(const QUrl &source, const CompressionOptions &options)
{
    const QString sourceName = source.fileName();
    const QString sourceExtension = pathExtension(sourceName);
    const QString baseName =
        sourceExtension.isEmpty() ? sourceName : sourceName.chopped(sourceExtension.size() + 1);
    const QString extension =
        options.convertEnabled ? fileExtension(options.convertFormat) : sourceExtension;

    const auto inFolder = [](const QUrl &folder, const QString &name) {
        const QString path = folder.toLocalFile();
        return QUrl::fromLocalFile(path.endsWith(u'/') ? path + name : path + u'/' + name);
    };
    const auto firstFree = [&](const QUrl &folder, const QString &base) {
        QUrl url = inFolder(folder, base + u'.' + extension);
        for (int n = 1; QFileInfo::exists(url.toLocalFile()); ++n)
            url = inFolder(folder, base + u'-' + QString::number(n) + u'.' + extension);
        return url;
    };

    const QUrl sourceFolder = source.adjusted(QUrl::RemoveFilename);
    switch (options.outputDestination) {
    case OutputDestination::alongside: return firstFree(sourceFolder, baseName + u"-pixpress"_s);
    case OutputDestination::overwrite:
        if (options.convertEnabled && extension != sourceExtension.toLower())
            return inFolder(sourceFolder, baseName + u'.' + extension);
        return source;
    case OutputDestination::customFolder:
        return firstFree(options.customFolderURL.value_or(sourceFolder), baseName);
    }
    Q_UNREACHABLE();
}

std::expected<void, QString> writeFile(const QUrl &target, const QByteArray &bytes)
{
    // Symbolic links to a file that does not exist yet make that file.
    QFileInfo info(target.toLocalFile());
    for (int links = 0; links < 40 && info.isSymLink() && !info.exists(); ++links)
        info.setFile(info.symLinkTarget());
    QFile file(info.filePath());
    Outcome written;
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered))
        written = writeNew(file, bytes);
    else if (file.exists())
        written = overwrite(file, bytes);
    else
        written = std::unexpected(file.errorString());
    if (!written)
        return failure(u"write"_s, target, written.error());
    return {};
}

} // namespace pixpress
