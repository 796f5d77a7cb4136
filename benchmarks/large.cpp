// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "curlrun.h"
#include "pipeline.h"
#include "queuerun.h"
#include "support.h"

#include <QFile>

#include <cstdio>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

constexpr qint64 inputSize = 500'000'000;
constexpr qint64 outputSize = inputSize * 3 / 5; // as the server answers
constexpr double allowedExtra = 40e6;
constexpr int rounds = 9;
constexpr double mega = 1e6;

struct Figures
{
    double seconds = 0;
    double peakMemory = 0; // bytes
};

/// In a process of its own, so that memory and its past are those of this run alone.
Figures measure(const QString &kind, const Server &server, const QUrl &file)
{
    const auto words = runAgain({u"--large"_s, kind, server.url().toString(), file.toString()});
    QFile output(outputPath(file));
    if (output.size() != outputSize)
        throw Failure(u"The output has %1 bytes."_s.arg(output.size()));
    output.remove();
    sync(); // what the system still has to write shall not disturb the next run
    return {words.value(0).toDouble(), words.value(1).toDouble()};
}

} // namespace

void measureLarge(const QStringList &names)
{
    const Workplace place(Medium::disk, inputSize + outputSize + 200'000'000);
    const Server server;
    const QUrl file = place.makeFile(u"picture.png"_s, inputSize);

    Samples ours;
    Samples whole;
    Samples inPieces;
    Samples peak;
    const auto rate = [](const Figures &figures) {
        return static_cast<double>(inputSize + outputSize) / mega / figures.seconds;
    };
    measure(u"whole"_s, server, file); // warms up
    for (int round = 0; round < rounds; ++round) {
        const auto measureQueue = [&] {
            const Figures figures = measure(u"queue"_s, server, file);
            ours.add(rate(figures));
            peak.add(figures.peakMemory / mega);
        };
        if (round % 2)
            measureQueue();
        whole.add(rate(measure(u"whole"_s, server, file)));
        inPieces.add(rate(measure(u"pieces"_s, server, file)));
        if (round % 2 == 0)
            measureQueue();
    }

    if (names.contains("pipeline-large"_L1)) {
        print({u"pipeline-large"_s, ours.median(), whole.median(), u"MB/s"_s, 0.9});
        note(
            u"pipeline-large: %1 runs each; queue %2, libcurl alone %3, libcurl in pieces %4 MB/s"_s
                .arg(rounds)
                .arg(ours.range(), whole.range(), inPieces.range()));
    }
    if (names.contains("pipeline-memory"_L1)) {
        print({u"pipeline-memory"_s, peak.median(),
               (static_cast<double>(inputSize + outputSize) + allowedExtra) / mega, u"MB"_s, 1.0});
    }
}

void runLarge(const QStringList &arguments)
{
    const QString kind = arguments.value(0);
    const QUrl server(arguments.value(1));
    const QList<QUrl> files = {QUrl(arguments.value(2))};
    const double seconds =
        kind == "queue"_L1
            ? runQueue(server, files)
            : runCurl(server, files, kind == "whole"_L1 ? Holding::whole : Holding::inPieces);
    std::printf("%f %lld\n", seconds, static_cast<long long>(memoryFigure("VmHWM")));
}

} // namespace bench
