// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "measure.h"

#include "codec/codec.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <vips/vips8>

#include <algorithm>
#include <atomic>

using namespace Qt::StringLiterals;
using pixpress::ImageFormat;

namespace bench {

namespace {

using vips::VImage;

/// The seconds that the program takes.
double run(const QString &program, const QStringList &arguments, QByteArray *output = nullptr)
{
    QProcess process;
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        throw Failure(u"%1 %2: %3"_s.arg(program, arguments.join(u' '),
                                         QString::fromLocal8Bit(process.readAllStandardError())));
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    if (output)
        *output = process.readAllStandardOutput();
    return seconds;
}

/// What starting the program costs, which is no part of the work: the least of a few starts.
double startup(ImageFormat format)
{
    double least = 1e9;
    const QString option = format == ImageFormat::webp ? u"-version"_s : u"--version"_s;
    for (int i = 0; i < 5; ++i)
        least = std::min(least, run(toolOf(format), {option}));
    return least;
}

QByteArray contents(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(u"%1 cannot be read."_s.arg(name));
    return file.readAll();
}

void write(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw Failure(u"%1 cannot be written."_s.arg(name));
}

VImage withoutMetadata(const VImage &image)
{
    VImage result = image.copy();
    char **fields = vips_image_get_fields(result.get_image());
    for (char **field = fields; *field; ++field)
        vips_image_remove(result.get_image(), *field);
    g_strfreev(fields);
    return result;
}

} // namespace

Reference::Reference(const QString &picture)
{
    const QByteArray bytes = contents(picture);
    try {
        VImage image = VImage::thumbnail_buffer(
            vips_blob_new(nullptr, bytes.constData(), static_cast<size_t>(bytes.size())), 1600,
            VImage::option()->set("size", VIPS_SIZE_DOWN)->set("export_profile", "srgb"));
        image = withoutMetadata(image.copy_memory());
        image.pngsave(path("reference.png").toLocal8Bit().constData());
        if (image.has_alpha())
            image = image.flatten(VImage::option()->set("background", 255.0));
        image.jpegsave(path("input.jpg").toLocal8Bit().constData(),
                       VImage::option()->set("Q", 95)->set("strip", true));
        VImage::jpegload(path("input.jpg").toLocal8Bit().constData())
            .pngsave(path("reference-jpeg.png").toLocal8Bit().constData());
    } catch (const vips::VError &error) {
        throw Failure(QString::fromLocal8Bit(error.what()));
    }
}

QString Reference::inputFor(ImageFormat format) const
{
    return format == ImageFormat::jpeg ? path("input.jpg") : path("reference.png");
}

double Reference::distance(ImageFormat format, const Encoding &encoding) const
{
    const QString decoded = path("decoded.png");
    try {
        withoutMetadata(VImage::new_from_file(encoding.file.toLocal8Bit().constData()))
            .pngsave(decoded.toLocal8Bit().constData(), VImage::option()->set("compression", 1));
    } catch (const vips::VError &error) {
        throw Failure(QString::fromLocal8Bit(error.what()));
    }
    const char *original = format == ImageFormat::jpeg ? "reference-jpeg.png" : "reference.png";
    QByteArray output;
    run(u"butteraugli_main"_s, {path(original), decoded}, &output);
    return output.simplified().split(' ').last().toDouble();
}

Encoding Reference::ours(ImageFormat format) const
{
    const QByteArray input = contents(inputFor(format));
    pixpress::RequestOptions options;
    options.convert = {format};
    const std::atomic_bool stopped = false;
    QElapsedTimer timer;
    timer.start();
    const auto encoded = pixpress::compress(input, options, 1LL << 28, stopped);
    const double seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    if (!encoded)
        throw Failure(encoded.error().message);
    const QString file = path("ours.") + pixpress::fileExtension(format);
    write(file, encoded->bytes);
    return {static_cast<double>(encoded->bytes.size()), seconds, file};
}

Encoding Reference::yardstick(ImageFormat format, int setting) const
{
    const QString input = inputFor(format);
    const QString file = path("yardstick.") + pixpress::fileExtension(format);
    const QString value = QString::number(setting);
    QStringList arguments;
    switch (format) {
    case ImageFormat::png:
        arguments = {u"--force"_s,  u"--strip"_s, u"--quality"_s, u"0-"_s + value,
                     u"--output"_s, file,         input};
        break;
    case ImageFormat::jpeg:
        write(file, contents(input)); // It works in place.
        arguments = {u"--quiet"_s, u"--max="_s + value, u"--all-progressive"_s, u"--strip-all"_s,
                     file};
        break;
    case ImageFormat::webp: arguments = {u"-quiet"_s, u"-q"_s, value, input, u"-o"_s, file}; break;
    case ImageFormat::avif:
        arguments = {u"--min"_s, value,       u"--max"_s, value, u"--yuv"_s,
                     u"420"_s,   u"--jobs"_s, u"all"_s,   input, file};
        break;
    }
    static const double startups[] = {startup(ImageFormat::png), startup(ImageFormat::jpeg),
                                      startup(ImageFormat::webp), startup(ImageFormat::avif)};
    const double seconds = run(toolOf(format), arguments) - startups[static_cast<int>(format)];
    return {static_cast<double>(QFileInfo(file).size()), seconds, file};
}

std::vector<int> yardstickSettings(ImageFormat format)
{
    switch (format) {
    case ImageFormat::png: return {80, 90, 98, 100};
    case ImageFormat::jpeg: return {76, 79, 82, 85};
    case ImageFormat::webp: return {74, 77, 80, 83};
    case ImageFormat::avif: return {48, 42, 36, 30, 24}; // Quantisers.
    }
    Q_UNREACHABLE();
}

int nominalSetting(ImageFormat format)
{
    switch (format) {
    case ImageFormat::png: return 98;
    case ImageFormat::jpeg: return 82;
    case ImageFormat::webp: return 80;
    case ImageFormat::avif: return 36;
    }
    Q_UNREACHABLE();
}

QString toolOf(ImageFormat format)
{
    switch (format) {
    case ImageFormat::png: return u"pngquant"_s;
    case ImageFormat::jpeg: return u"jpegoptim"_s;
    case ImageFormat::webp: return u"cwebp"_s;
    case ImageFormat::avif: return u"avifenc"_s;
    }
    Q_UNREACHABLE();
}

} // namespace bench
