// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/arguments.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>

using namespace Qt::StringLiterals;

namespace pixpress::cli {

namespace {

const QString helpText = uR"(Usage: pixpress-cli [OPTION]... [FILE]...
Makes PNG, JPEG, WebP and AVIF files smaller. Each result is written next to its
file, as NAME-pixpress.EXT. Nothing leaves this computer unless --remote is given.

  --resize MODE         scale, fit, cover or thumb (default: fit); needs a width
                        or a height, with just one of them the picture is scaled
  --width N             width in pixels
  --height N            height in pixels
  --convert FORMAT      png, jpeg, webp or avif
  --background COLOUR   '#rrggbb', fills transparency when converting to jpeg or
                        avif (default: '#ffffff')
  --preserve LIST       metadata to keep, any of copyright,creation,location
  --overwrite           replace the files themselves
  --output FOLDER       write the results into this folder, which must exist,
                        under the same names
  --files0-from FILE    also compress the files named in FILE, each name ended by
                        a zero byte, as find -print0 does; '-' is standard input
  --recursive FOLDER    also compress the pictures in FOLDER and the folders below
                        it; with --output, results go into the same folders there.
                        Hidden files, symbolic links and results are left out
  --remote              use the web service, with the key and the monthly quota
                        of the desktop application
  --jobs N              compress N files at a time on this computer (default: the
                        number of processor cores)
  --json                print one JSON object per line
  --help                print this help
  --version             print the version

Exit status: 0 when all files were compressed, 1 when any failed or none was a
picture of these formats, 2 for wrong usage, 130 when interrupted.
)"_s;

constexpr qint64 mostJobs = 64;

/// The first thing that is wrong with the options, kept while the rest is read.
class Fault
{
public:
    void set(const QString &text)
    {
        if (m_text.isEmpty())
            m_text = text;
    }
    const QString &text() const { return m_text; }

private:
    QString m_text;
};

std::optional<qint64> readDimension(const QCommandLineParser &parser, const QString &name,
                                    Fault &fault)
{
    if (!parser.isSet(name))
        return std::nullopt;
    bool isNumber = false;
    const qint64 value = parser.value(name).toLongLong(&isNumber);
    if (!isNumber || value < 1)
        fault.set(u"--%1 takes a number of pixels from 1 on, not \"%2\"."_s.arg(
            name, parser.value(name)));
    return value;
}

void readResize(const QCommandLineParser &parser, CompressionOptions &options, Fault &fault)
{
    options.resizeWidth = readDimension(parser, u"width"_s, fault);
    options.resizeHeight = readDimension(parser, u"height"_s, fault);
    options.resizeEnabled = options.resizeWidth || options.resizeHeight;
    if (!parser.isSet(u"resize"_s))
        return;
    const auto mode = fromRawValue<ResizeMode>(parser.value(u"resize"_s));
    if (!mode)
        fault.set(u"--resize takes scale, fit, cover or thumb, not \"%1\"."_s.arg(
            parser.value(u"resize"_s)));
    else if (!options.resizeEnabled)
        fault.set(u"--resize needs --width, --height or both."_s);
    else
        options.resizeMode = *mode;
}

void readConversion(const QCommandLineParser &parser, CompressionOptions &options, Fault &fault)
{
    if (parser.isSet(u"convert"_s)) {
        const QString name = parser.value(u"convert"_s);
        if (const auto format = fromRawValue<ImageFormat>(u"image/"_s + name)) {
            options.convertEnabled = true;
            options.convertFormat = *format;
        } else {
            fault.set(u"--convert takes png, jpeg, webp or avif, not \"%1\"."_s.arg(name));
        }
    }
    if (parser.isSet(u"background"_s)) {
        static const QRegularExpression colour(u"^#[0-9a-fA-F]{6}\\z"_s);
        options.backgroundColor = parser.value(u"background"_s).toLower();
        if (!colour.match(options.backgroundColor).hasMatch())
            fault.set(u"--background takes a colour like '#ffffff', not \"%1\"."_s.arg(
                parser.value(u"background"_s)));
        else if (!options.requiresBackground())
            fault.set(u"--background needs --convert jpeg or --convert avif."_s);
    }
}

void readPreserve(const QCommandLineParser &parser, CompressionOptions &options, Fault &fault)
{
    if (!parser.isSet(u"preserve"_s))
        return;
    for (const QString &name : parser.value(u"preserve"_s).split(u',')) {
        if (name == "copyright"_L1)
            options.preserveCopyright = true;
        else if (name == "creation"_L1)
            options.preserveCreation = true;
        else if (name == "location"_L1)
            options.preserveLocation = true;
        else
            fault.set(u"--preserve takes copyright, creation and location, separated by commas, "
                      u"not \"%1\"."_s.arg(name));
    }
}

void readInputs(const QCommandLineParser &parser, Arguments &arguments, Fault &fault)
{
    arguments.lists = parser.values(u"files0-from"_s);
    arguments.folders = parser.values(u"recursive"_s);
    for (const QString &folder : arguments.folders) {
        if (!QFileInfo(folder).isDir())
            fault.set(u"--recursive takes a folder that exists, not \"%1\"."_s.arg(folder));
    }
    if (arguments.files.isEmpty() && arguments.lists.isEmpty() && arguments.folders.isEmpty())
        fault.set(u"No file is given."_s);
}

qint64 readJobs(const QCommandLineParser &parser, Fault &fault)
{
    if (!parser.isSet(u"jobs"_s))
        return QThread::idealThreadCount();
    if (parser.isSet(u"remote"_s))
        fault.set(u"--jobs does not go with --remote."_s);
    bool isNumber = false;
    const qint64 jobs = parser.value(u"jobs"_s).toLongLong(&isNumber);
    if (!isNumber || jobs < 1 || jobs > mostJobs)
        fault.set(u"--jobs takes a number from 1 to %1, not \"%2\"."_s.arg(mostJobs).arg(
            parser.value(u"jobs"_s)));
    return jobs;
}

void readDestination(const QCommandLineParser &parser, CompressionOptions &options, Fault &fault)
{
    if (parser.isSet(u"overwrite"_s))
        options.outputDestination = OutputDestination::overwrite;
    if (!parser.isSet(u"output"_s))
        return;
    if (parser.isSet(u"overwrite"_s))
        fault.set(u"--overwrite and --output exclude each other."_s);
    const QFileInfo folder(parser.value(u"output"_s));
    if (!folder.isDir())
        fault.set(
            u"--output takes a folder that exists, not \"%1\"."_s.arg(parser.value(u"output"_s)));
    options.outputDestination = OutputDestination::customFolder;
    options.customFolderURL = QUrl::fromLocalFile(folder.absoluteFilePath());
}

} // namespace

std::expected<Arguments, NothingToRun> parseArguments(const QStringList &commandLine)
{
    QCommandLineParser parser;
    for (const auto &[name, value] : {std::pair{u"resize"_s, u"mode"_s},
                                      {u"width"_s, u"n"_s},
                                      {u"height"_s, u"n"_s},
                                      {u"convert"_s, u"format"_s},
                                      {u"background"_s, u"colour"_s},
                                      {u"preserve"_s, u"list"_s},
                                      {u"output"_s, u"folder"_s},
                                      {u"overwrite"_s, QString()},
                                      {u"files0-from"_s, u"file"_s},
                                      {u"recursive"_s, u"folder"_s},
                                      {u"jobs"_s, u"n"_s},
                                      {u"remote"_s, QString()},
                                      {u"json"_s, QString()},
                                      {u"help"_s, QString()},
                                      {u"version"_s, QString()}}) {
        parser.addOption(QCommandLineOption(name, QString(), value));
    }

    Fault fault;
    if (!parser.parse(commandLine))
        fault.set(parser.errorText());
    if (parser.isSet(u"help"_s))
        return std::unexpected(NothingToRun{.text = helpText});
    if (parser.isSet(u"version"_s))
        return std::unexpected(NothingToRun{.text = u"pixpress-cli " PIXPRESS_VERSION "\n"_s});

    Arguments arguments{.files = parser.positionalArguments(), .options = {}};
    arguments.remote = parser.isSet(u"remote"_s);
    arguments.json = parser.isSet(u"json"_s);
    arguments.jobs = readJobs(parser, fault);
    readResize(parser, arguments.options, fault);
    readConversion(parser, arguments.options, fault);
    readPreserve(parser, arguments.options, fault);
    readDestination(parser, arguments.options, fault);
    readInputs(parser, arguments, fault);
    if (!fault.text().isEmpty()) {
        return std::unexpected(NothingToRun{
            .isError = true,
            .text = u"pixpress-cli: %1\nTry 'pixpress-cli --help'.\n"_s.arg(fault.text())});
    }
    return arguments;
}

} // namespace pixpress::cli
