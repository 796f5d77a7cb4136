// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "curlrun.h"
#include "pipeline.h"
#include "queuerun.h"
#include "support.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

constexpr int fileCount = 1000;
constexpr qint64 fileSize = 20'000;
constexpr int rounds = 11;

} // namespace

void measureSmall()
{
    const Workplace place(Medium::memory, 100'000'000);
    const Server server;
    QList<QUrl> files;
    for (int i = 0; i < fileCount; ++i)
        files += place.makeFile(u"picture-%1.png"_s.arg(i), fileSize);

    const auto removeOutputs = [&] {
        for (const QUrl &file : std::as_const(files))
            QFile::remove(outputPath(file));
    };
    const auto ours = [&] {
        const double seconds = runQueue(server.url(), files);
        removeOutputs();
        return seconds;
    };
    const auto yardstick = [&] {
        const double seconds = runCurl(server.url(), files, Holding::whole);
        removeOutputs();
        return seconds;
    };

    ours();
    yardstick();
    Samples queue;
    Samples curl;
    for (int round = 0; round < rounds; ++round) {
        if (round % 2)
            curl.add(yardstick());
        queue.add(ours());
        if (round % 2 == 0)
            curl.add(yardstick());
    }
    print({u"pipeline-small"_s, queue.median(), curl.median(), u"s"_s, 2.0});
    note(u"pipeline-small: %1 runs each; the queue took %2 s, libcurl alone %3 s"_s.arg(rounds).arg(
        queue.range(), curl.range()));
}

} // namespace bench
