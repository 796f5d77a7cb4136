// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "late/module.h"

#include "localservice/localservice.h"

namespace {

std::shared_ptr<void> serve(std::function<QByteArray()> key, pixpress::Listener listener)
{
    pixpress::LocalServiceConfig config;
    config.key = std::move(key);
    auto service = std::make_shared<pixpress::LocalService>(std::move(config));
    service->start(std::move(listener));
    return service;
}

} // namespace

extern "C" Q_DECL_EXPORT const pixpress::ModuleFunctions *pixpressModule()
{
    static constexpr pixpress::ModuleFunctions functions{&pixpress::makeThumbnail,
                                                         &pixpress::makeHttpWorker, &serve};
    return &functions;
}
