// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/application.h"

#include "cli/arguments.h"
#include "cli/run.h"
#include "pipeline/interrupt.h"
#include "pipeline/queue.h"
#include "pipeline/quota.h"
#include "pipeline/settings.h"
#include "worker/localservice.h"

#include <QCoreApplication>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>

using namespace Qt::StringLiterals;

namespace pixpress::cli {

namespace {

constexpr int usageStatus = 2;
constexpr int interruptedStatus = 130;

void print(std::FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
}

/// Jobs of cron and the like run without a locale; Qt would complain on each start, and read file
/// names wrong.
void useUtf8()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        qputenv("LC_ALL", "C.UTF-8");
}

int run(QCoreApplication &app, const Arguments &arguments, CompressionQueue &queue,
        SettingsStore &settings)
{
    const auto inputs = collectInputs(arguments);
    if (!inputs) {
        print(stderr, u"pixpress-cli: %1\n"_s.arg(inputs.error()));
        return usageStatus;
    }
    Run run(arguments, *inputs, queue);
    QObject::connect(&run, &Run::finished, &app, &QCoreApplication::exit);
    onInterrupt(&app, [&run, &settings] {
        run.interrupt();
        settings.flush();
        // Here no file is being written, and everything else is in memory.
        std::_Exit(interruptedStatus);
    });
    run.start();
    return QCoreApplication::exec();
}

int runRemotely(QCoreApplication &app, const Arguments &arguments, const ServiceConfig &service)
{
    UserSettings settings;
    QuotaTracker quota(settings);
    CompressionQueue queue(settings, service);
    queue.setQuotaTracker(&quota);
    return run(app, arguments, queue, settings);
}

int runLocally(QCoreApplication &app, const Arguments &arguments)
{
    TransientSettings settings;
    Worker worker;
    CompressionQueue queue(settings, std::make_unique<LocalService>(worker), arguments.jobs);
    return run(app, arguments, queue, settings);
}

} // namespace

int runApplication(int argc, char **argv, const ServiceConfig &remoteService)
{
    useUtf8();
    QCoreApplication app(argc, argv);
    const auto arguments = parseArguments(QCoreApplication::arguments());
    if (!arguments) {
        print(arguments.error().isError ? stderr : stdout, arguments.error().text);
        return arguments.error().isError ? usageStatus : EXIT_SUCCESS;
    }
    return arguments->remote ? runRemotely(app, *arguments, remoteService)
                             : runLocally(app, *arguments);
}

} // namespace pixpress::cli
