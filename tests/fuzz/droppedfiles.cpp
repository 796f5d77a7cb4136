// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "model/formats.h"
#include "pipeline/outputname.h"
#include "ui/droppedfiles.h"

#include <QMimeData>

using namespace Qt::StringLiterals;
using namespace pixpress;

namespace {

QString folderOf(const QString &path)
{
    return path.first(path.lastIndexOf(u'/') + 1);
}

/// `file` is a source that was taken.
void checkOutput(const QUrl &file, const CompressionOptions &options)
{
    const OutputName name(file, options);
    const bool replaces = options.outputDestination == OutputDestination::overwrite;
    HOLDS(name.replaces() == replaces);
    HOLDS(name.url()
              .isLocalFile()); // Qt takes what follows two slashes for a host, and gives it back.
    const QString source = file.toLocalFile();
    const QString path = name.url().toLocalFile();
    const bool isElsewhere = options.outputDestination == OutputDestination::customFolder;
    HOLDS(folderOf(path) == (isElsewhere ? u"/chosen/"_s : folderOf(source)));
    HOLDS(isSupported(name.url().fileName()));
    if (!replaces) {
        HOLDS(path != source || isElsewhere);
        const QString second = name.url(1).toLocalFile();
        HOLDS(second != path && name.url(2).toLocalFile() != second);
    } else if (!options.convertEnabled) {
        HOLDS(path == source);
    }
}

} // namespace

// A list of addresses, as a file manager hands it over: only files of this machine are taken, each
// under a name of a picture that the system understands as the program does, and each copy goes to
// where the options say.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QMimeData dragged;
    dragged.setData(u"text/uri-list"_s,
                    QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    const QList<QUrl> files = supportedFiles(dragged.urls());
    HOLDS(files.isEmpty() || hasFile(dragged.urls()));
    HOLDS(supportedFiles(files) == files);
    for (const QUrl &file : files) {
        HOLDS(file.isLocalFile() && file.host().isEmpty());
        const QString path = file.toLocalFile();
        HOLDS(file.toEncoded() == QUrl::fromLocalFile(path).toEncoded());
        HOLDS(path.startsWith(u'/') && !path.endsWith(u'/'));
        HOLDS(!path.contains(QChar(0)));
        HOLDS(isSupported(path.sliced(path.lastIndexOf(u'/') + 1)));
        for (const OutputDestination destination : allCases<OutputDestination>()) {
            CompressionOptions options;
            options.outputDestination = destination;
            options.customFolderURL = QUrl::fromLocalFile(u"/chosen"_s);
            checkOutput(file, options);
            options.convertEnabled = true;
            checkOutput(file, options);
        }
    }
    return 0;
}
