// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace bench {

// Each measures what its name says and prints its rows.
void measureStart(); // window-start, window-memory, both also with OpenGL
void measureIdle();  // idle, idle-list, both also with the processor time
void measureList();  // list-stall, list-memory, list-frame

/// A program that was built with this one.
QString sibling(const QString &name);
/// Makes a small PNG file. Returns its path.
QString makePicture(const QString &path);

} // namespace bench
