// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An HTTP server that answers like the compression service, at once and without compressing: each
// output has three fifths of its input's size and means nothing. Prints its port, then serves one
// thread a connection until its standard input ends. Bodies are neither kept nor looked at.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

using std::string_view_literals::operator""sv;

constexpr size_t chunk = 256 << 10;

struct Request
{
    bool isPost = false;
    std::string path;
    size_t length = 0;
    bool expectsContinue = false;
};

size_t toNumber(std::string_view text)
{
    size_t number = 0;
    std::from_chars(text.begin(), text.end(), number);
    return number;
}

std::optional<std::string_view> header(std::string_view head, std::string_view lowerCaseName)
{
    for (size_t at = head.find("\r\n"sv); at != head.npos; at = head.find("\r\n"sv, at)) {
        at += 2;
        const std::string_view line = head.substr(at, head.find("\r\n"sv, at) - at);
        const size_t colon = line.find(':');
        const auto equal = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; };
        if (colon == line.npos || !std::ranges::equal(line.substr(0, colon), lowerCaseName, equal))
            continue;
        const std::string_view value = line.substr(colon + 1);
        return value.substr(std::min(value.find_first_not_of(' '), value.size()));
    }
    return std::nullopt;
}

Request parse(std::string_view head)
{
    const size_t method = head.find(' ');
    const size_t path = head.find(' ', method + 1);
    return {.isPost = head.starts_with("POST "),
            .path = std::string(head.substr(method + 1, path - method - 1)),
            .length = toNumber(header(head, "content-length").value_or("0")),
            .expectsContinue = header(head, "expect").has_value()};
}

class Connection
{
public:
    Connection(int socket, int port) : m_socket(socket), m_port(port), m_buffer(chunk) {}
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;
    ~Connection() { close(m_socket); }

    void serve()
    {
        while (const auto request = readHead()) {
            if (request->expectsContinue && !send("HTTP/1.1 100 Continue\r\n\r\n"))
                return;
            if (!skipBody(request->length) || !answer(*request))
                return;
        }
    }

private:
    bool receive()
    {
        const ssize_t got =
            recv(m_socket, m_buffer.data() + m_filled, m_buffer.size() - m_filled, 0);
        m_filled += static_cast<size_t>(std::max<ssize_t>(got, 0));
        return got > 0;
    }

    void drop(size_t count)
    {
        std::memmove(m_buffer.data(), m_buffer.data() + count, m_filled - count);
        m_filled -= count;
    }

    std::optional<Request> readHead()
    {
        while (true) {
            const std::string_view received(m_buffer.data(), m_filled);
            if (const size_t end = received.find("\r\n\r\n"sv); end != received.npos) {
                Request request = parse(received.substr(0, end));
                drop(end + 4);
                return request;
            }
            if (m_filled == m_buffer.size() || !receive())
                return std::nullopt;
        }
    }

    bool skipBody(size_t length)
    {
        while (length > m_filled) {
            length -= std::exchange(m_filled, 0);
            if (!receive())
                return false;
        }
        drop(length);
        return true;
    }

    bool answer(const Request &request)
    {
        if (request.isPost && request.path == "/shrink") {
            const size_t output = request.length * 3 / 5;
            std::array<char, 512> body;
            const int size =
                std::snprintf(body.data(), body.size(),
                              R"({"input":{"size":%zu,"type":"image/png"},"output":{"size":%zu,)"
                              R"("type":"image/png","width":640,"height":480,"ratio":0.6,)"
                              R"("url":"http://127.0.0.1:%d/output/%zu"}})",
                              request.length, output, m_port, output);
            const std::string location = "Location: http://127.0.0.1:" + std::to_string(m_port) +
                                         "/output/" + std::to_string(output) + "\r\n";
            return send("HTTP/1.1 201 Created\r\nCompression-Count: 1\r\n" + location +
                        "Content-Type: application/json\r\nContent-Length: " +
                        std::to_string(size) + "\r\n\r\n" + body.data());
        }
        constexpr auto outputs = "/output/"sv;
        if (!request.path.starts_with(outputs))
            return send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
        return sendOutput(toNumber(std::string_view(request.path).substr(outputs.size())));
    }

    bool sendOutput(size_t size)
    {
        static const std::string picture(chunk, 'x');
        std::string head = "HTTP/1.1 200 OK\r\nCompression-Count: 1\r\nContent-Type: image/png\r\n"
                           "Content-Length: " +
                           std::to_string(size) + "\r\n\r\n";
        if (size <= picture.size())
            return send(head.append(picture, 0, size));
        bool sent = send(head);
        for (; sent && size > picture.size(); size -= picture.size())
            sent = send(picture);
        return sent && send(std::string_view(picture).substr(0, size));
    }

    bool send(std::string_view data)
    {
        while (!data.empty()) {
            const ssize_t sent = ::send(m_socket, data.data(), data.size(), 0);
            if (sent < 0)
                return false;
            data.remove_prefix(static_cast<size_t>(sent));
        }
        return true;
    }

    const int m_socket;
    const int m_port;
    std::vector<char> m_buffer;
    size_t m_filled = 0;
};

[[noreturn]] void fail(const char *what)
{
    std::perror(what);
    std::exit(1);
}

} // namespace

int main()
{
    std::signal(SIGPIPE, SIG_IGN);

    const int listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *const generic = reinterpret_cast<sockaddr *>(&address);
    socklen_t length = sizeof address;
    if (listener < 0 || bind(listener, generic, length) != 0 || listen(listener, 16) != 0 ||
        getsockname(listener, generic, &length) != 0)
        fail("bench_server: cannot listen");
    const int port = ntohs(address.sin_port);
    std::printf("%d\n", port);
    std::fflush(stdout);

    std::thread([listener, port] {
        while (true) {
            const int socket = accept(listener, nullptr, nullptr);
            if (socket < 0)
                fail("bench_server: cannot accept");
            const int yes = 1;
            setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
            std::thread([socket, port] { Connection(socket, port).serve(); }).detach();
        }
    }).detach();

    char ignored;
    while (read(STDIN_FILENO, &ignored, 1) > 0)
        continue;
    std::_Exit(0); // the threads that still serve need no goodbye
}
