// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/settings.h"
#include "service/tinifyservice.h"

#include <QGuiApplication>

#include <memory>
#include <optional>

class QQmlApplicationEngine;

namespace pixpress {

/// The process of a desktop application: the toolkit, set up as this program wants it.
class Application : public QGuiApplication
{
public:
    Application(int &argc, char **argv);
    ~Application() override;

    /// Shows the window, adds the files that the command line names, and runs until it is closed.
    /// Returns the exit status.
    /// Without a service, pictures are compressed on this computer.
    int run(SettingsStore &settings, const std::optional<ServiceConfig> &service);

    /// The engine that run() would use, which must be destroyed before what its window shows.
    std::unique_ptr<QQmlApplicationEngine> takeEngine();

private:
    std::unique_ptr<QQmlApplicationEngine> m_engine;
};

} // namespace pixpress
