// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QUrl>

#include <memory>

class QQmlApplicationEngine;
class QQmlEngine;

namespace pixpress {

/// Where the view of this name is read from.
QUrl viewURL(const QString &name);

/// Reads the view, and what it consists of, in a thread of the engine's, so that whoever needs it
/// later does not have to wait for it.
void readAhead(QQmlEngine &engine, const QString &name);

/// The engine to show the window with. It begins to read the window's views at once: the caller's
/// thread can set up the toolkit meanwhile, which takes as long.
std::unique_ptr<QQmlApplicationEngine> makeEngine();

} // namespace pixpress
