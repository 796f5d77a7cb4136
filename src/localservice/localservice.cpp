// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/localservice.h"

#include "localservice/handler.h"

#include <algorithm>
#include <thread>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr ConnectionLimits connectionLimits;

// What a picture takes while it is worked on: its pixels, a converted or resized copy, and what the
// hungriest of the encoders keeps besides.
constexpr qint64 bytesPerPixel = 24;

qint64 physicalMemory()
{
    return static_cast<qint64>(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE);
}

} // namespace

qint64 defaultMaxPixels()
{
    constexpr qint64 most = 1 << 28;
    return std::clamp(physicalMemory() / 2 / bytesPerPixel, qint64(1) << 24, most);
}

qint64 defaultStoreBytes()
{
    return std::clamp(physicalMemory() / 4, qint64(1) << 28, qint64(3) << 29);
}

class LocalService::Private
{
public:
    explicit Private(LocalServiceConfig config)
        : handler(std::move(config), static_cast<int>(connectionLimits.threads))
    {
        handler.attachTo(server);
    }

    RequestHandler handler;
    ConnectionServer server{connectionLimits};
    std::thread listener;
};

LocalService::LocalService(LocalServiceConfig config)
    : d(std::make_unique<Private>(std::move(config)))
{
}

LocalService::~LocalService()
{
    if (!d->listener.joinable())
        return;
    d->handler.stop();
    d->server.stop();
    d->listener.join();
}

std::expected<void, QString> LocalService::start()
{
    auto listener = Listener::open();
    if (!listener)
        return std::unexpected(listener.error());
    start(std::move(*listener));
    return {};
}

void LocalService::start(Listener listener)
{
    d->handler.setPort(listener.address().port());
    d->listener = std::thread([this, socket = listener.release()] { d->server.run(socket); });
}

QUrl LocalService::baseURL() const
{
    return QUrl::fromEncoded(d->handler.baseAddress());
}

qint64 LocalService::compressionCount() const
{
    return d->handler.compressionCount();
}

} // namespace pixpress
