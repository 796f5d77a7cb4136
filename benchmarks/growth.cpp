// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline.h"
#include "queuerun.h"
#include "support.h"

#include <QFile>

#include <cstdio>
#include <map>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

constexpr int few = 1000;
constexpr int some = 10'000;
constexpr int many = 100'000;

constexpr int rounds = 3;
constexpr int runsOfFew = 6;
constexpr int sourceCount = 100;
constexpr qint64 sourceSize = 2;      // the output has one byte
constexpr double allowedBytes = 1500; // of a waiting task

} // namespace

void measureGrowth()
{
    const Workplace place(Medium::memory, 10'000'000);
    const Server server;
    QList<QUrl> sources;
    for (int i = 0; i < sourceCount; ++i)
        sources += place.makeFile(u"picture-%1.png"_s.arg(i), sourceSize);

    std::map<int, Samples> micros; // for one task, by the number of tasks
    const auto measure = [&](int count) {
        QList<QUrl> files;
        for (int i = 0; i < count; ++i)
            files += sources[i % sourceCount];
        // Few sources, each used often, so that no folder grows with the list. That takes that the
        // name of an output is free again when its source has its next turn.
        const double seconds =
            runQueue(server.url(), files, [](const pixpress::CompressionTask &task) {
                QFile::remove(outputPath(task.sourceURL));
            });
        micros[count].add(seconds / count * 1e6);
    };

    measure(few);
    micros.clear(); // warm now
    for (int round = 0; round < rounds; ++round) {
        for (int i = 0; i < runsOfFew; ++i)
            measure(few);
        measure(some);
        measure(many);
        for (int i = 0; i < runsOfFew; ++i)
            measure(few);
    }

    print({u"queue-growth"_s, micros[many].median(), micros[few].median(), u"us/task"_s, 1.3});
    for (const auto &[count, samples] : micros) {
        note(u"queue-growth: of %1 tasks each took %2 us (%3)"_s.arg(count)
                 .arg(samples.median(), 0, 'f', 1)
                 .arg(samples.range()));
    }
}

void measureWaiting()
{
    const double bytes = runAgain({u"--waiting"_s}).value(0).toDouble();
    print({u"queue-memory"_s, bytes, allowedBytes, u"bytes"_s, 1.0});
}

void runWaiting()
{
    pixpress::TransientSettings settings; // without a key nothing starts
    pixpress::CompressionQueue queue(settings);
    const auto add = [&](int count) {
        QList<QUrl> files;
        for (int i = 0; i < count; ++i) {
            files += QUrl::fromLocalFile(
                u"/home/somebody/Pictures/Summer holiday/IMG_%1.jpg"_s.arg(100'000 + i));
        }
        queue.addFiles(files, alongside());
    };

    add(1); // brings what the first task of a process brings with it
    const qint64 before = memoryFigure("VmRSS");
    add(many);
    const qint64 after = memoryFigure("VmRSS");
    std::printf("%lld\n", static_cast<long long>((after - before) / many));
}

} // namespace bench
