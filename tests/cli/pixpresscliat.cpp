// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program, but with the remote service at another address:
//     pixpress-cli-at ADDRESS [OPTION]... FILE...

#include "cli/application.h"

#include <algorithm>
#include <span>

using namespace pixpress;

int main(int argc, char *argv[])
{
    const std::span arguments(argv, static_cast<size_t>(argc));
    if (arguments.size() < 2)
        qFatal("Usage: pixpress-cli-at ADDRESS [OPTION]... FILE...");
    const QUrl address = QUrl::fromEncoded(arguments[1]);
    std::ranges::rotate(arguments.subspan(1), arguments.begin() + 2);
    argv[--argc] = nullptr;
    return cli::runApplication(argc, argv, {.baseURL = address, .limits = {}});
}
