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
    case OutputDestination::alongside: m_baseName += "-pixpress"_L1; return;
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
    const QString suffix = number > 0 ? u'-' + QString::number(number) : QString();
    return QUrl::fromLocalFile(m_folder + m_baseName + suffix + u'.' + m_extension);
}

} // namespace pixpress
