// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/outputname.h"

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// Of the decoded path: in an address, an encoded slash belongs to the file's name.
QString folderOf(const QUrl &source)
{
    const QString path = source.toLocalFile();
    return path.first(path.lastIndexOf(u'/') + 1);
}

bool isNone(const QUrl &folder)
{
    return folder.isEmpty() || (folder.isLocalFile() && folder.toLocalFile().isEmpty());
}

/// The longest name that file systems take, in bytes.
constexpr qsizetype longestName = 255;

/// As much of the text from its beginning as fits so many bytes, in whole characters.
QString shortened(QString text, qsizetype bytes)
{
    while (text.toUtf8().size() > bytes) {
        const bool isPair = text.back().isLowSurrogate();
        text.chop(isPair ? 2 : 1);
    }
    return text;
}

} // namespace

OutputName::OutputName(const QUrl &source, const CompressionOptions &options)
    : m_folder(folderOf(source))
{
    const QString sourceName = source.fileName();
    const QString sourceExtension = pathExtension(sourceName);
    m_baseName =
        sourceExtension.isEmpty() ? sourceName : sourceName.chopped(sourceExtension.size() + 1);
    m_extension = options.convertEnabled ? fileExtension(options.convertFormat) : sourceExtension;

    switch (options.outputDestination) {
    case OutputDestination::alongside: m_suffix = u"-pixpress"_s; return;
    case OutputDestination::overwrite:
        m_replaces = true;
        if (!options.convertEnabled || m_extension == sourceExtension.toLower())
            m_whole = source;
        return;
    case OutputDestination::customFolder:
        if (const QUrl folder = options.customFolderURL.value_or(QUrl()); !isNone(folder)) {
            // Any other address has no path, or one that leads elsewhere here.
            m_isOnThisComputer = folder.isLocalFile() && folder.host().isEmpty();
            if (m_isOnThisComputer)
                m_folder = folder.toLocalFile();
        }
        if (!m_folder.endsWith(u'/'))
            m_folder += u'/';
        return;
    }
    Q_UNREACHABLE();
}

QUrl OutputName::url(int number) const
{
    if (!m_whole.isEmpty())
        return m_whole;
    const QString end =
        m_suffix + (number > 0 ? u'-' + QString::number(number) : QString()) + u'.' + m_extension;
    const QString stem = shortened(m_baseName, longestName - end.toUtf8().size());
    return QUrl::fromLocalFile(m_folder + stem + end);
}

} // namespace pixpress
