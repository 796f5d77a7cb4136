// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "../support.h"
#include "program.h"
#include "window.h"

#include <QDir>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

constexpr int rounds = 3;
constexpr int many = 10'000;
constexpr int screenful = 20;
constexpr double allowedStall = 50;
constexpr double allowedBytes = 2000;
constexpr double allowedFrame = 16;

/// The figures that bench_list prints for a list of so many rows.
QList<double> run(const Desktop &desktop, int rows)
{
    // The outputs come to lie beside the files.
    const Workplace place(Medium::memory, 100'000'000);
    const QString picture = makePicture(place.path(u"picture.png"_s));
    QDir(place.path({})).mkdir(u"list"_s);
    for (int number = 0; number < rows; ++number) {
        const QString name = place.path(u"list/IMG_%1.png"_s.arg(100'000 + number));
        if (::link(QFile::encodeName(picture), QFile::encodeName(name)) != 0)
            throw Failure(name + u" cannot be made."_s);
    }

    QProcess process;
    test::bindToThisProcess(process);
    process.setProcessEnvironment(desktop.environment());
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(sibling(u"bench_list"_s), {place.path(u"list"_s)});
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        throw Failure(u"bench_list did not succeed."_s);
    QList<double> figures;
    for (const QByteArray &word : process.readAllStandardOutput().simplified().split(' '))
        figures += word.toDouble();
    return figures;
}

} // namespace

void measureList()
{
    const Desktop desktop;
    run(desktop, screenful); // fills the caches
    Samples stalls;
    Samples bytes;
    Samples longest;
    Samples longestAlone;
    Samples typical;
    for (int round = 0; round < rounds; ++round) {
        const double few = run(desktop, screenful).value(1);
        const QList<double> figures = run(desktop, many);
        stalls.add(figures.value(0));
        bytes.add((figures.value(1) - few) / (many - screenful));
        typical.add(figures.value(2));
        longest.add(figures.value(3));
        longestAlone.add(figures.value(4));
    }

    print({u"list-stall"_s, stalls.median(), allowedStall, u"ms"_s, 1});
    print({u"list-memory"_s, bytes.median(), allowedBytes, u"bytes"_s, 1});
    print({u"list-frame"_s, longest.median(), allowedFrame, u"ms"_s, 1});
    note(u"list-stall: the longest of each run %1 ms"_s.arg(stalls.range()));
    note(u"list-memory: %1 bytes a row"_s.arg(bytes.range()));
    note(u"list-frame: the longest of each run %1 ms, the median %2 ms"_s.arg(longest.range())
             .arg(typical.median(), 0, 'f', 2));
    note(u"list-frame: the longest of each run in processor time, %1 ms"_s.arg(
        longestAlone.range()));
}

} // namespace bench
