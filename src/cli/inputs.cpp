// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/inputs.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace pixpress::cli {

namespace {

std::expected<QStringList, QString> readList(const QString &name)
{
    QFile file(name);
    const bool isOpen =
        name == "-"_L1 ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    const QByteArray content = isOpen ? file.readAll() : QByteArray();
    QStringList names;
    for (const QByteArray &entry : content.split('\0')) {
        if (!entry.isEmpty())
            names.append(QFile::decodeName(entry));
    }
    if (!isOpen || file.error() != QFileDevice::NoError)
        return std::unexpected(u"Could not read \"%1\": %2."_s.arg(name, file.errorString()));
    return names;
}

/// By its name: a picture that was compressed before, or written by hand as if.
bool isOutput(const QFileInfo &file)
{
    static const QRegularExpression suffix(u"-pixpress(-[0-9]+)?\\z"_s);
    return suffix.match(file.completeBaseName()).hasMatch();
}

/// Adds the pictures of a folder, in the order of their names. `mirror` is where the outputs go, in
/// folders like those that are walked; empty: wherever the options say.
void addFolder(const QDir &folder, const QString &mirror, const QString &output, Inputs &inputs)
{
    if (!folder.isReadable()) {
        inputs.unreadableFolders.append(folder.path());
        return;
    }
    constexpr auto filter =
        QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks; // hidden: none
    for (const QFileInfo &entry : folder.entryInfoList(filter, QDir::Name)) {
        if (!entry.isDir()) {
            if (isSupported(entry.fileName()) && !isOutput(entry))
                inputs.files.append({entry.filePath(), mirror});
        } else if (entry.canonicalFilePath() != output) {
            addFolder(QDir(entry.filePath()),
                      mirror.isEmpty() ? QString() : mirror + u'/' + entry.fileName(), output,
                      inputs);
        }
    }
}

} // namespace

std::expected<Inputs, QString> collectInputs(const Arguments &arguments)
{
    Inputs inputs;
    for (const QString &file : arguments.files)
        inputs.files.append({file});
    for (const QString &list : arguments.lists) {
        const auto names = readList(list);
        if (!names)
            return std::unexpected(names.error());
        for (const QString &name : *names)
            inputs.files.append({name});
    }
    const QString output = arguments.options.customFolderURL.value_or(QUrl()).toLocalFile();
    for (const QString &folder : arguments.folders)
        addFolder(QDir(folder), output, QFileInfo(output).canonicalFilePath(), inputs);
    return inputs;
}

} // namespace pixpress::cli
