// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares Pixpress's codec with the usual command-line tools, on a folder of pictures:
// the bytes at the same quality, and the time.

#include "measure.h"

#include <QCoreApplication>
#include <QDirIterator>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using bench::Encoding;
using pixpress::ImageFormat;

namespace {

struct Sum
{
    double ours = 0;
    double yardstick = 0;
};

/// How a setting of the tool turned out.
struct Point
{
    double distance = 0;
    double bytes = 0;
};

/// The bytes that the tool would need for `distance`, read off between the two settings next to it.
/// Beyond its settings the nearest one stands.
double bytesAt(double distance, std::vector<Point> measured)
{
    std::ranges::sort(measured, std::ranges::greater(), &Point::distance);
    if (distance >= measured.front().distance)
        return measured.front().bytes;
    for (size_t i = 1; i < measured.size(); ++i) {
        const Point &worse = measured[i - 1];
        const Point &better = measured[i];
        if (distance < better.distance)
            continue;
        const double span = worse.distance - better.distance;
        const double share = span > 0 ? (worse.distance - distance) / span : 1;
        return std::exp(std::lerp(std::log(worse.bytes), std::log(better.bytes), share));
    }
    return measured.back().bytes;
}

/// The median of three runs, in turns with the other side.
double median(std::array<double, 3> values)
{
    std::ranges::sort(values);
    return values[1];
}

void print(const QString &name, const Sum &sum, const char *unit, double limit)
{
    std::printf("{\"name\":\"%s\",\"ours\":%.6g,\"yardstick\":%.6g,\"unit\":\"%s\","
                "\"ratio\":%.4f,\"limit\":%.2f}\n",
                qPrintable(name), sum.ours, sum.yardstick, unit, sum.ours / sum.yardstick, limit);
}

void compare(ImageFormat format, const std::vector<std::unique_ptr<bench::Reference>> &references)
{
    Sum bytes;
    Sum seconds;
    int outside = 0;
    for (const auto &reference : references) {
        std::array<double, 3> ours{};
        std::array<double, 3> yardstick{};
        Encoding encoding;
        for (size_t i = 0; i < ours.size(); ++i) {
            encoding = reference->ours(format);
            ours[i] = encoding.seconds;
            yardstick[i] = reference->yardstick(format, bench::nominalSetting(format)).seconds;
        }
        std::vector<Point> measured;
        for (const int setting : bench::yardstickSettings(format)) {
            const Encoding point = reference->yardstick(format, setting);
            measured.push_back({reference->distance(format, point), point.bytes});
        }
        const double distance = reference->distance(format, encoding);
        outside += distance > std::ranges::max(measured, {}, &Point::distance).distance ||
                   distance < std::ranges::min(measured, {}, &Point::distance).distance;
        bytes.ours += encoding.bytes;
        bytes.yardstick += bytesAt(distance, measured);
        seconds.ours += median(ours);
        seconds.yardstick += median(yardstick);
    }
    const QString suffix = u'-' + pixpress::fileExtension(format);
    print(u"encode-bytes"_s + suffix, bytes, "bytes", 1.0);
    print(u"encode-time"_s + suffix, seconds, "s", 1.2);
    if (outside > 0)
        std::printf("# %s: %d pictures lie outside of the qualities that the tool was run at.\n",
                    qPrintable(pixpress::displayName(format)), outside);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_encode FOLDER\n");
        return 2;
    }
    qputenv("VIPS_WARNING", "none"); // Being set, it silences them: an ignored profile is no news.
    try {
        std::vector<std::unique_ptr<bench::Reference>> references;
        QDirIterator files(QString::fromLocal8Bit(argv[1]), QDir::Files);
        while (files.hasNext()) {
            const QString file = files.next();
            if (pixpress::isSupported(file))
                references.push_back(std::make_unique<bench::Reference>(file));
        }
        if (references.empty())
            throw bench::Failure(u"There is no picture in the folder."_s);
        std::printf("# %zu pictures, at most 1600 pixels a side. Bytes at the same butteraugli "
                    "3-norm; seconds without the start of the tool.\n",
                    references.size());
        for (const ImageFormat format : pixpress::allCases<ImageFormat>())
            compare(format, references);
    } catch (const bench::Failure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
