// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/application.h"

using namespace pixpress;

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("pixpress"));
    Application::setDesktopFileName(QStringLiteral(PIXPRESS_APP_ID));
    Application application(argc, argv);
    UserSettings settings;
    return application.run(settings, ServiceConfig());
}
