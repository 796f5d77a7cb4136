// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares the list's thumbnails with libvips's own, in turns, on pictures of 18 megapixels that
// are made here. Without arguments all formats, else those of the named rows.

#include "../support.h"
#include "ui/thumbnails.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <vips/vips8>

using namespace Qt::StringLiterals;
using vips::VImage;

namespace {

constexpr int rounds = 11;
constexpr double allowed = 1.1;
constexpr int pixels = 72;

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Like a photograph in what it costs to decode: shapes of all sizes, and some noise.
VImage makePicture()
{
    constexpr int width = 5184;
    constexpr int height = 3456;
    const auto channel = [&](int cell) {
        const VImage shapes =
            VImage::perlin(width, height, VImage::option()->set("cell_size", cell)) * 100 + 128;
        return shapes + VImage::gaussnoise(width, height, VImage::option()->set("sigma", 4.0));
    };
    return channel(512)
        .bandjoin({channel(128), channel(64)})
        .cast(VIPS_FORMAT_UCHAR)
        .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB))
        .copy_memory();
}

double timeOurs(const QString &file)
{
    static pixpress::Worker worker;
    static pixpress::Thumbnails thumbnails(worker);
    QElapsedTimer timer;
    timer.start();
    const QFuture<QImage> thumbnail = thumbnails.request(QUrl::fromLocalFile(file));
    while (!thumbnail.isFinished())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (thumbnail.result().isNull())
        throw bench::Failure(u"There is no thumbnail of "_s + file);
    return milliseconds(timer);
}

double timeLibrary(const QString &file)
{
    QElapsedTimer timer;
    timer.start();
    size_t size = 0;
    void *const memory =
        VImage::thumbnail(qPrintable(file), pixels,
                          VImage::option()->set("height", pixels)->set("size", VIPS_SIZE_DOWN))
            .write_to_memory(&size);
    const double time = milliseconds(timer);
    g_free(memory);
    return time;
}

void measure(const QString &format, const VImage &picture, const bench::Workplace &place,
             vips::VOption *options)
{
    const QString file = place.path(u"picture."_s + format);
    picture.write_to_file(qPrintable(file), options);
    bench::Samples ours;
    bench::Samples library;
    timeOurs(file);
    timeLibrary(file);
    for (int round = 0; round < rounds; ++round) {
        ours.add(timeOurs(file));
        library.add(timeLibrary(file));
    }
    const QString name = u"thumbnail-"_s + format;
    bench::print({name, ours.median(), library.median(), u"ms"_s, allowed});
    bench::note(u"%1: %2 ms, libvips %3 ms"_s.arg(name, ours.range(), library.range()));
}

void run(const QStringList &wanted)
{
    const bench::Workplace place(bench::Medium::memory, 200'000'000);
    const VImage picture = makePicture();
    const auto fast = [](const char *name, int value) {
        return VImage::option()->set(name, value);
    };
    const std::pair<QString, vips::VOption *> formats[] = {{u"jpeg"_s, fast("Q", 85)},
                                                           {u"png"_s, fast("compression", 1)},
                                                           {u"webp"_s, fast("effort", 0)},
                                                           {u"avif"_s, fast("effort", 0)}};
    for (const auto &[format, options] : formats) {
        if (wanted.isEmpty() || wanted.contains(u"thumbnail-"_s + format))
            measure(format, picture, place, options);
        else
            delete options;
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    if (VIPS_INIT(argv[0]) != 0)
        return 1;
    try {
        run(app.arguments().sliced(1));
        return 0;
    } catch (const std::exception &failure) { // libvips's too
        std::fprintf(stderr, "bench_thumbnail: %s\n", failure.what());
        return 1;
    }
}
