// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

namespace bench {

// Each measures what its names say and prints a row for each of them.
void measureSmall();                         // pipeline-small
void measureLarge(const QStringList &names); // pipeline-large, pipeline-memory
void measureGrowth();                        // queue-growth
void measureWaiting();                       // queue-memory

// What some of them run in a process of its own, with the arguments after its first; prints
// figures.
void runLarge(const QStringList &arguments);
void runWaiting();

} // namespace bench
