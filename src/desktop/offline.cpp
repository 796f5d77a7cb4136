// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/offlinesettings.h"
#include "late/builtinservice.h"
#include "ui/application.h"

using namespace pixpress;

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("pixpress-offline"));
    Application::setDesktopFileName(QStringLiteral(PIXPRESS_APP_ID));
    Application application(argc, argv);

    OfflineSettings settings;
    BuiltInService service([key = settings.key().toUtf8()] { return key; });
    if (const auto started = service.start(); !started)
        qFatal("The compression service does not start: %s", qUtf8Printable(started.error()));
    return application.run(settings, ServiceConfig::builtIn(service.baseURL()));
}
