// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/files.h"

#include "pipeline/descriptor.h"
#include "pipeline/newfile.h"
#include "pipeline/outputname.h"
#include "pipeline/overwrite.h"

#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

std::unexpected<QString> sentence(const QString &verb, const QUrl &url, const QString &reason)
{
    return std::unexpected(
        u"Could not %1 \"%2\": %3."_s.arg(verb, QFileInfo(url.toLocalFile()).fileName(), reason));
}

/// Why a file cannot be opened. Qt replaces the bytes that are no text, and another name is looked
/// for than the one that is there.
QString whyUnreadable(const QString &path, int error)
{
    if (error == ENOENT && path.contains(QChar::ReplacementCharacter))
        return u"Its name, or that of a folder, is not valid UTF-8 text. Rename it first"_s;
    return Descriptor::describe(error);
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

/// Makes a file that is not there yet.
Descriptor::Result<> writeNew(const QString &path, const QByteArray &bytes)
{
    const auto content = [&bytes](Descriptor &file) {
        qint64 written = 0;
        return file.writeAll(bytes, written);
    };
    auto made = makeFile(path, content);
    if (!made && made.error() == EEXIST) {
        if (const QString target = dangling(path); !target.isEmpty())
            made = makeFile(target, content);
    }
    return made;
}

/// The output's name, if it can be written to.
std::expected<OutputName, QString> outputName(const QUrl &source, const CompressionOptions &options)
{
    OutputName name(source, options);
    if (!name.isOnThisComputer()) {
        return std::unexpected(
            u"Could not write to \"%1\": It is not a folder on this computer."_s.arg(
                options.customFolderURL->toDisplayString()));
    }
    return name;
}

} // namespace

std::expected<SourceFile, QString> readSource(const QUrl &source, const CompressionOptions &options)
{
    const auto name = outputName(source, options);
    if (!name)
        return std::unexpected(name.error());
    if (name->replaces()) {
        if (const QString reason = leftoverCopy(name->url().toLocalFile()); !reason.isEmpty())
            return sentence(u"write"_s, name->url(), reason);
    }
    auto content = readFile(source);
    if (!content)
        return std::unexpected(content.error());
    QByteArray digest = name->replacesSource() ? digestOf(*content) : QByteArray();
    return SourceFile{.content = *std::move(content), .digest = std::move(digest)};
}

std::expected<QByteArray, QString> readFile(const QUrl &source)
{
    const QString path = source.toLocalFile();
    auto file = Descriptor::open(path, O_RDONLY);
    if (!file)
        return sentence(u"read"_s, source, whyUnreadable(path, file.error()));
    (void)file->lock(LOCK_SH); // Not while a copy of this program is overwriting it.
    auto content = file->readAll();
    if (!content)
        return sentence(u"read"_s, source, Descriptor::describe(content.error()));
    return *std::move(content);
}

std::expected<QUrl, QString> writeOutput(const QUrl &source, const CompressionOptions &options,
                                         const QByteArray &bytes, const QByteArray &digest)
{
    const auto name = outputName(source, options);
    if (!name)
        return std::unexpected(name.error());
    if (name->replaces()) {
        const auto written =
            writeFile(name->url(), bytes, name->replacesSource() ? digest : QByteArray());
        if (!written)
            return std::unexpected(written.error());
        return name->url();
    }
    for (int number = 0;; ++number) {
        QUrl target = name->url(number);
        const auto written = writeNew(target.toLocalFile(), bytes);
        if (written)
            return target;
        if (written.error() != EEXIST)
            return sentence(u"write"_s, target, Descriptor::describe(written.error()));
    }
}

std::expected<void, QString> writeFile(const QUrl &target, const QByteArray &bytes,
                                       const QByteArray &digest)
{
    const QString path = target.toLocalFile();
    if (digest.isEmpty()) {
        const auto made = writeNew(path, bytes);
        if (made)
            return {};
        if (made.error() != EEXIST)
            return sentence(u"write"_s, target, Descriptor::describe(made.error()));
    }
    if (const auto written = overwrite(path, bytes, digest); !written)
        return sentence(u"write"_s, target, written.error());
    return {};
}

} // namespace pixpress
