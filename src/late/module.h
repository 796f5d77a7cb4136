// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "localservice/listener.h"
#include "pictures/thumbnail.h"
#include "service/httpworker.h"

#include <QByteArray>

#include <functional>
#include <memory>

namespace pixpress {

/// What the module does.
struct ModuleFunctions
{
    decltype(&pixpress::makeThumbnail) makeThumbnail;
    decltype(&pixpress::makeHttpWorker) makeHttpWorker;
    /// A LocalService with this key, for as long as the result is kept.
    std::shared_ptr<void> (*serve)(std::function<QByteArray()> key, Listener listener);
};

/// The one function that the module exports, under this name.
using ModuleEntry = const ModuleFunctions *();
inline constexpr auto moduleEntry = "pixpressModule";

} // namespace pixpress
