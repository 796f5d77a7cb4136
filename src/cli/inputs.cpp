// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/inputs.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <vector>

using namespace Qt::StringLiterals;

namespace pixpress::cli {

namespace {

namespace fs = std::filesystem;

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

/// What is in a folder, by name. Not by QDir, which leaves out names that are not UTF-8.
std::expected<std::vector<fs::directory_entry>, std::error_code> entriesOf(const QString &folder)
{
    std::error_code error;
    std::vector<fs::directory_entry> entries;
    fs::directory_iterator next(QFile::encodeName(folder).toStdString(), error);
    for (; !error && next != fs::directory_iterator(); next.increment(error))
        entries.push_back(*next);
    if (error)
        return std::unexpected(error);
    std::ranges::sort(entries, {}, [](const fs::directory_entry &entry) { return entry.path(); });
    return entries;
}

/// Adds the pictures of a folder. `mirror` is where the outputs go, in folders like those that are
/// walked; empty: wherever the options say. `output` is left out.
void addFolder(const QString &folder, const QString &mirror, const QString &output, Inputs &inputs)
{
    const auto entries = entriesOf(folder);
    if (!entries) {
        inputs.unreadableFolders.append(folder);
        return;
    }
    for (const fs::directory_entry &entry : *entries) {
        const QString name =
            QFile::decodeName(QByteArray::fromStdString(entry.path().filename().string()));
        const QFileInfo file(folder + u'/' + name);
        std::error_code ignored;
        if (name.startsWith(u'.') || entry.is_symlink(ignored))
            continue;
        if (entry.is_directory(ignored)) {
            if (output.isEmpty() || file.canonicalFilePath() != output)
                addFolder(file.filePath(), mirror.isEmpty() ? QString() : mirror + u'/' + name,
                          output, inputs);
        } else if (isSupported(name) && !isOutput(file)) {
            inputs.files.append({file.filePath(), mirror});
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
        addFolder(folder, output, QFileInfo(output).canonicalFilePath(), inputs);
    return inputs;
}

} // namespace pixpress::cli
