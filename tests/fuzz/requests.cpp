// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "localservice/handler.h"

#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>

using namespace pixpress;

namespace {

class Server : public httplib::Server
{
public:
    using httplib::Server::process_request;
};

/// What the service answers to a peer that sends `input` and no more, over a socket and through the
/// service's own reading, but without its threads.
QByteArray answersTo(const QByteArray &input, RequestHandler &handler)
{
    constexpr int bufferSize = 1 << 20; // Both sides are done by one thread: everything must fit.
    std::array<int, 2> ends{};
    HOLDS(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) == 0);
    const auto [peer, own] = ends;
    for (const int end : ends)
        ::setsockopt(end, SOL_SOCKET, SO_SNDBUF, &bufferSize, sizeof bufferSize);
    HOLDS(::send(peer, input.data(), static_cast<size_t>(input.size()), 0) == input.size());
    ::shutdown(peer, SHUT_WR);

    Server server;
    handler.setPort(80);
    handler.attachTo(server);
    const ConnectionLimits limits{.headBytes = 4096};
    const std::atomic<size_t> openCount = 1;
    ConnectionStream stream(own, ConnectionStream::Clock::now(), limits, openCount);
    bool isClosed = false;
    while (!isClosed && stream.awaitRequest()) {
        if (!server.process_request(stream, false, isClosed, nullptr) || !stream.flush())
            break;
    }
    ::close(own);

    QByteArray answers;
    std::array<char, 4096> part{};
    for (ssize_t count = 0; (count = ::recv(peer, part.data(), part.size(), 0)) > 0;)
        answers.append(part.data(), count);
    ::close(peer);
    return answers;
}

LocalServiceConfig config(const QByteArray &key)
{
    LocalServiceConfig config;
    config.key = [key] { return key; };
    config.counting = true;
    config.maxPixels = 4096;
    config.maxBody = 4096;
    config.storeBytes = 1 << 16;
    return config;
}

} // namespace

// What a connection to the local service brings: only HTTP goes back, and without the key nothing
// is done.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input = fuzz::bytesOf(data, size);
    // The input cannot hold what follows from all of it.
    RequestHandler closed(config(QByteArray::number(fuzz::digestOf(input))), 1);
    const QByteArray refusals = answersTo(input, closed);
    HOLDS(refusals.isEmpty() || refusals.startsWith("HTTP/1."));
    HOLDS(!refusals.contains("HTTP/1.1 2") && !refusals.contains("Compression-Count"));
    HOLDS(closed.compressionCount() == 0);

    RequestHandler open(config("key"), 1);
    const QByteArray answers = answersTo(input, open);
    HOLDS(answers.isEmpty() || answers.startsWith("HTTP/1."));
    HOLDS(open.compressionCount() == answers.count("HTTP/1.1 201"));
    return 0;
}
