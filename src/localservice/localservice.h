// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "localservice/listener.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace pixpress {

/// An answer that stands in for the real one, to try out how a client takes it.
struct LocalServiceFault
{
    int status = 500;
    QByteArray body; ///< Sent as JSON.
};

/// How many pixels, all frames together, this machine's memory can be expected to bear.
qint64 defaultMaxPixels();

/// How many bytes of pictures may wait in memory to be fetched.
qint64 defaultStoreBytes();

struct LocalServiceConfig
{
    /// The key that a request must show: what the owner's settings hold at the moment in which the
    /// request's head has arrived. Called on the service's threads, on several at a time, and not
    /// once the service is destroyed. While it returns nothing nobody is let in.
    std::function<QByteArray()> key;

    bool counting = false;              ///< Answers then carry "Compression-Count".
    qint64 initialCount = 0;            ///< Compressions that this month has seen already.
    std::optional<qint64> monthlyLimit; ///< Compressions after which the service refuses more.

    qint64 maxPixels = defaultMaxPixels();
    qint64 maxBody = 500'000'000; ///< Bytes of an uploaded picture.
    qint64 storeBytes = defaultStoreBytes();

    /// Asked at every request, on the service's threads, with its method and path. What it returns
    /// is the answer, after the request's body has been read.
    std::function<std::optional<LocalServiceFault>(const QByteArray &, const QByteArray &)> fault;
};

/// A compression service on this machine: speaks HTTP on 127.0.0.1, on a free port and threads of
/// its own. Keeps everything in memory and nothing on the disk.
///
///     POST /shrink      picture       201, Location and a JSON description of the output
///     GET  /output/ID                 200, the compressed picture
///     POST /output/ID   JSON options  200, worked from the uploaded original
///
/// Every request needs HTTP Basic credentials: user "api", the key as password. Errors are JSON
/// with the members "error" and "message". Web pages are refused, whatever they show.
///
/// A compression is counted for each answered upload and for each answered request with options.
/// One that is under way has its place within the limit already.
class LocalService
{
public:
    explicit LocalService(LocalServiceConfig config);

    /// Ends all connections and waits for the threads: for milliseconds, except when the AV1
    /// encoder or the last passes of a JPEG are at work. Those cannot be interrupted and take
    /// seconds on very large pictures.
    ~LocalService();

    LocalService(const LocalService &) = delete;
    LocalService &operator=(const LocalService &) = delete;

    /// Begins to serve: connections to a free port, or those that a listener has and will get. Call
    /// one of them, once. Fails when the system gives no port.
    std::expected<void, QString> start();
    void start(Listener listener);

    /// "http://127.0.0.1:PORT", without a slash at its end. Valid once started.
    QUrl baseURL() const;

    /// Compressions so far, with the initial ones.
    qint64 compressionCount() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace pixpress
