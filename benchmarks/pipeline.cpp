// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The benchmarks of the pipeline. Without arguments all of them, else the named ones.

#include "pipeline.h"

#include "support.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <initializer_list>

using namespace Qt::StringLiterals;

namespace {

const QString small = u"pipeline-small"_s;
const QString large = u"pipeline-large"_s;
const QString memory = u"pipeline-memory"_s;
const QString growth = u"queue-growth"_s;
const QString waiting = u"queue-memory"_s;

void complain(const bench::Failure &failure)
{
    std::fprintf(stderr, "bench_pipeline: %s\n", failure.what());
}

/// Whether all went well.
bool run(const QStringList &arguments)
{
    const QString first = arguments.value(0);
    if (first == "--large"_L1) {
        bench::runLarge(arguments.sliced(1));
        return true;
    }
    if (first == "--waiting"_L1) {
        bench::runWaiting();
        return true;
    }

    const QStringList names = {small, large, memory, growth, waiting};
    const QStringList wanted = arguments.isEmpty() ? names : arguments;
    for (const QString &name : wanted) {
        if (!names.contains(name))
            throw bench::Failure(u"There is no benchmark %1."_s.arg(name));
    }
    const auto isWanted = [&](const QString &name) { return wanted.contains(name); };
    bool complete = true;
    const auto measure = [&](std::initializer_list<QString> rows, const auto &benchmark) {
        if (std::ranges::none_of(rows, isWanted))
            return;
        try {
            benchmark();
        } catch (const bench::Failure &failure) {
            complain(failure);
            complete = false;
        }
    };
    measure({small}, bench::measureSmall);
    measure({large, memory}, [&] { bench::measureLarge(wanted); });
    measure({growth}, bench::measureGrowth);
    measure({waiting}, bench::measureWaiting);
    return complete;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    try {
        return run(app.arguments().sliced(1)) ? 0 : 1;
    } catch (const bench::Failure &failure) {
        complain(failure);
        return 1;
    }
}
