// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/application.h"

using namespace pixpress;

int main(int argc, char *argv[])
{
    QCoreApplication::setApplicationName(QStringLiteral("pixpress-offline"));
    Application::setDesktopFileName(QStringLiteral(PIXPRESS_APP_ID));
    Application application(argc, argv);
    TransientSettings settings; // no key, no count: nothing to keep
    return application.run(settings, std::nullopt);
}
