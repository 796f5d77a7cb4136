// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The benchmarks of the pipeline. Without arguments all of them; `--list` prints their names.

#include "pipeline.h"

#include "support.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const QStringList names = {u"pipeline-small"_s, u"pipeline-large"_s, u"pipeline-memory"_s,
                           u"queue-growth"_s, u"queue-memory"_s};

void run(const QStringList &arguments)
{
    const QString first = arguments.value(0);
    if (first == "--list"_L1) {
        std::printf("%s\n", qPrintable(names.join(u'\n')));
        return;
    }
    if (first == "--large"_L1)
        return bench::runLarge(arguments.sliced(1));
    if (first == "--waiting"_L1)
        return bench::runWaiting();

    const QStringList wanted = arguments.isEmpty() ? names : arguments;
    for (const QString &name : wanted) {
        if (!names.contains(name))
            throw bench::Failure(u"There is no benchmark %1."_s.arg(name));
    }
    if (wanted.contains("pipeline-small"_L1))
        bench::measureSmall();
    if (wanted.contains("pipeline-large"_L1) || wanted.contains("pipeline-memory"_L1))
        bench::measureLarge(wanted);
    if (wanted.contains("queue-growth"_L1))
        bench::measureGrowth();
    if (wanted.contains("queue-memory"_L1))
        bench::measureWaiting();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    try {
        run(app.arguments().sliced(1));
    } catch (const bench::Failure &failure) {
        std::fprintf(stderr, "bench_pipeline: %s\n", failure.what());
        return 1;
    }
    return 0;
}
