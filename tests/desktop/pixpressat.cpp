// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The application with the remote service, but with the service at another address:
//     pixpress-at ADDRESS [FILE]...

#include "ui/application.h"

#include <span>

using namespace pixpress;

int main(int argc, char *argv[])
{
    const std::span arguments(argv, static_cast<size_t>(argc));
    if (arguments.size() < 2)
        qFatal("Usage: pixpress-at ADDRESS [FILE]...");
    const QUrl address = QUrl::fromEncoded(arguments[1]);
    std::ranges::rotate(arguments.subspan(1), arguments.begin() + 2);
    argv[--argc] = nullptr;

    QCoreApplication::setApplicationName(QStringLiteral("pixpress"));
    Application application(argc, argv);
    UserSettings settings;
    return application.run(settings, ServiceConfig{.baseURL = address, .limits = {}});
}
