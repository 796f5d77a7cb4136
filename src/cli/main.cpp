// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/application.h"

int main(int argc, char *argv[])
{
    return pixpress::cli::runApplication(argc, argv);
}
