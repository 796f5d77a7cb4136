// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/transfer.h"

#include "service/address.h"
#include "service/hugepages.h"
#include "service/transporterrors.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <sys/socket.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr int maxRedirects = 10;

// How much memory is reserved on the word of an answer's head alone.
constexpr qint64 maxReserved = 512 << 20;

// Of all heads of a request, interim answers and trailers included. libcurl keeps them.
constexpr size_t largestHead = 256 << 10;

const QString answerTooLarge = u"The server's answer is too large."_s;

constexpr long receiveBuffer = 512 << 10;

// Larger ones widen the moment in which answerIsWaiting() is not yet, or no longer, true.
constexpr long sendBuffer = 64 << 10;

// Up to this size libcurl sends a body together with the head, if it has it in memory.
constexpr qsizetype smallBody = 60 << 10;

bool isSameOrigin(const QUrl &a, const QUrl &b)
{
    const auto port = [](const QUrl &url) {
        return url.port(url.scheme() == "https"_L1 ? 443 : 80);
    };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

curl_slist *append(curl_slist *list, const QByteArray &line)
{
    return curl_slist_append(list, line.constData());
}

} // namespace

EasyHandle Transfer::makeHandle(const HttpLimits &limits, OpenSockets &sockets)
{
    EasyHandle handle(curl_easy_init());
    CURL *const easy = handle.get();
    const auto set = [easy](CURLoption option, auto value) {
        curl_easy_setopt(easy, option, value);
    };
    if (!limits.caBundle.isEmpty())
        set(CURLOPT_CAINFO, limits.caBundle.toUtf8().constData());
    sockets.watch(easy);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // do not wait for a name server when the program ends
    set(CURLOPT_TCP_NODELAY, 1L);
    // HTTP/2 would put several transfers on one socket, where a look at the socket could not tell
    // whose answer is waiting, and has ways of its own to repeat a request.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_BUFFERSIZE, receiveBuffer);
    set(CURLOPT_UPLOAD_BUFFERSIZE, sendBuffer);
    set(CURLOPT_READFUNCTION, &Transfer::sendBody);
    set(CURLOPT_PREREQFUNCTION, &Transfer::beforeRequest);
    set(CURLOPT_HEADERFUNCTION, &Transfer::receiveHeader);
    set(CURLOPT_WRITEFUNCTION, &Transfer::receiveBody);
    return handle;
}

Transfer::Transfer(quint64 id, HttpRequest request, EasyHandle handle, const HttpLimits &limits,
                   const OpenSockets &sockets)
    : m_id(id),
      m_limits(limits),
      m_sockets(sockets),
      m_request(std::move(request)),
      m_easy(std::move(handle))
{
    const auto set = [this](CURLoption option) { curl_easy_setopt(m_easy.get(), option, this); };
    set(CURLOPT_READDATA);
    set(CURLOPT_PREREQDATA);
    set(CURLOPT_HEADERDATA);
    set(CURLOPT_WRITEDATA);
    prepare();
}

/// Sets all that differs from request to request.
void Transfer::prepare()
{
    m_response = {};
    m_sent = 0;
    m_attempts = 0;
    m_paused = false;
    m_headIsComplete = false;
    m_headSize = 0;

    const auto set = [this](CURLoption option, auto value) {
        curl_easy_setopt(m_easy.get(), option, value);
    };

    // Credentials in an address are nobody's business here; a fragment is not for servers.
    const QByteArray url = m_request.url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    const bool secure = m_request.url.scheme() == "https"_L1;
    set(CURLOPT_URL, url.constData());
    set(CURLOPT_PROTOCOLS_STR, secure ? "https" : "http");
    // This machine is not reached through a proxy; without a text the environment names it.
    set(CURLOPT_PROXY, secure ? nullptr : "");

    set(CURLOPT_FRESH_CONNECT, m_reconnects ? 1L : 0L);

    curl_slist *headers = nullptr;
    if (!m_request.authorization.isEmpty())
        headers = append(headers, "Authorization: " + m_request.authorization);
    // Without a value libcurl leaves out the header that it would add to a POST.
    headers = append(headers, "Content-Type:" + (m_request.contentType.isEmpty()
                                                     ? QByteArray()
                                                     : " " + m_request.contentType));
    // Nor does it ask whether a large body is welcome: a server that does not know the question
    // costs a second, one that says 417 the upload. Answers that come early are seen without it.
    headers = append(headers, "Expect:");
    set(CURLOPT_HTTPHEADER, headers);
    m_headers.reset(headers);

    const auto &body = m_request.body;
    set(CURLOPT_POSTFIELDS, body && body->size() <= smallBody ? body->constData() : nullptr);
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body ? body->size() : -1));
    set(body ? CURLOPT_POST : CURLOPT_HTTPGET, 1L);
}

Transfer::Clock::time_point Transfer::deadline() const
{
    return std::min(m_lastMove + m_limits.longestSilence, m_started + m_limits.longestTransfer);
}

std::optional<HttpResult> Transfer::finish(CURLcode code)
{
    if (m_refused)
        return std::unexpected(*std::move(m_refused));
    if (code == CURLE_ABORTED_BY_CALLBACK && m_reconnects && m_attempts == 1) {
        prepare(); // nothing has been sent yet
        return std::nullopt;
    }
    // libcurl's own bound for a single line.
    if (code == CURLE_OUT_OF_MEMORY && m_headSize > 0 && !m_headIsComplete)
        return std::unexpected(otherError(answerTooLarge));
    if (code != CURLE_OK)
        return std::unexpected(describe(code));
    if (!m_headIsComplete) // which libcurl takes for an answer without a body
        return std::unexpected(describe(CURLE_PARTIAL_FILE));

    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
    m_response.status = static_cast<int>(status);
    readHeaders();

    const bool repeatsMethod = status == 307 || status == 308;
    const bool redirects = status == 301 || status == 302 || status == 303 || repeatsMethod;
    const auto location = m_response.header("location");
    if (redirects && location && !(m_request.body && repeatsMethod))
        return follow(m_request.url.resolved(QUrl(QString::fromUtf8(*location))));
    return std::move(m_response);
}

std::optional<HttpResult> Transfer::follow(const QUrl &target)
{
    if (!isAllowedAddress(target))
        return std::unexpected(refusedAddress());
    if (++m_redirects > maxRedirects)
        return std::unexpected(otherError(u"The server redirected the request too often."_s));
    if (!isSameOrigin(target, m_request.url))
        m_request.authorization.clear();
    m_request.url = target;
    m_request.body.reset();
    m_request.contentType.clear();
    m_reconnects = false;
    prepare();
    return std::nullopt;
}

void Transfer::readHeaders()
{
    curl_header *header = nullptr;
    while ((header = curl_easy_nextheader(handle(), CURLH_HEADER, -1, header)))
        m_response.headers.insert(QByteArray(header->name).toLower(), header->value);
}

/// As recv(), without taking anything or waiting.
ssize_t Transfer::peek()
{
    if (m_socket == CURL_SOCKET_BAD)
        m_socket = m_sockets.find(m_localPort);
    char byte = 0;
    errno = EAGAIN; // if there is no socket
    return m_socket == CURL_SOCKET_BAD ? -1 : recv(m_socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
}

bool Transfer::answerIsWaiting()
{
    return peek() > 0;
}

/// Whether the kept-alive connection chosen for this request has something to say already, or has
/// ended. An answer that nobody asked for would be taken for the one to this request; and looking
/// takes a reset off the socket, so that libcurl would not see it and send.
bool Transfer::isDesynchronized()
{
    long connects = 0; // 0: it was there before
    curl_easy_getinfo(handle(), CURLINFO_NUM_CONNECTS, &connects);
    return connects == 0 && (peek() >= 0 || (errno != EAGAIN && errno != EWOULDBLOCK));
}

void Transfer::resume()
{
    if (m_paused)
        curl_easy_pause(handle(), CURLPAUSE_CONT);
}

size_t Transfer::sendBody(char *to, size_t size, size_t count, void *self)
{
    auto &transfer = *static_cast<Transfer *>(self);
    transfer.m_lastMove = Clock::now();
    const QByteArray body = transfer.m_request.body.value_or(QByteArray());
    const size_t length =
        std::min(size * count, static_cast<size_t>(body.size() - transfer.m_sent));
    std::memcpy(to, body.constData() + transfer.m_sent, length);
    // A server that refuses an upload answers and closes at once. Sending on into the closed
    // connection is an error, with which libcurl would drop the answer unread.
    if (!transfer.m_paused && transfer.answerIsWaiting()) {
        transfer.m_paused = true;
        return CURL_READFUNC_PAUSE;
    }
    transfer.m_paused = false;
    transfer.m_sent += static_cast<qsizetype>(length);
    return length;
}

/// Called for each line of a head, also of the interim answers before the answer, and for trailers.
size_t Transfer::receiveHeader(char *data, size_t size, size_t count, void *self)
{
    auto &transfer = *static_cast<Transfer *>(self);
    transfer.m_lastMove = Clock::now();
    const QByteArrayView line(data, static_cast<qsizetype>(size * count));
    if (line.startsWith("HTTP/"))
        transfer.m_headIsComplete = false;
    else if (line == "\r\n" || line == "\n")
        transfer.m_headIsComplete = true;
    transfer.m_headSize += size * count;
    if (transfer.m_headSize <= largestHead)
        return size * count;
    transfer.m_refused = otherError(answerTooLarge);
    return 0;
}

size_t Transfer::receiveBody(char *data, size_t size, size_t count, void *self)
{
    auto &transfer = *static_cast<Transfer *>(self);
    transfer.m_lastMove = Clock::now();
    // No exception may pass through libcurl, which is C.
    try {
        transfer.keep({data, static_cast<qsizetype>(size * count)});
    } catch (const std::bad_alloc &) {
        transfer.m_refused = outOfMemory();
    }
    return transfer.m_refused ? CURL_WRITEFUNC_ERROR : size * count;
}

void Transfer::keep(QByteArrayView piece)
{
    QByteArray &body = m_response.body;
    if (body.isEmpty()) {
        curl_off_t announced = -1;
        curl_easy_getinfo(handle(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
        body.reserve(std::clamp<qint64>(announced, 0, maxReserved));
        preferHugePages(body);
    }
    if (body.size() + piece.size() > m_limits.largestAnswer)
        m_refused = otherError(answerTooLarge);
    else
        body.append(piece);
}

/// Called when a connection for the request is there.
/// libcurl repeats a request when the kept-alive connection it chose turns out dead. The server may
/// have received the first one, so that for an upload this would be a second compression.
int Transfer::beforeRequest(void *self, char *, char *, int, int localPort)
{
    auto &transfer = *static_cast<Transfer *>(self);
    transfer.m_lastMove = Clock::now(); // connecting and waiting have a silence each
    transfer.m_localPort = localPort;
    transfer.m_socket = CURL_SOCKET_BAD;
    const bool again = ++transfer.m_attempts > 1;
    if (!again && !transfer.m_reconnects && transfer.isDesynchronized()) {
        transfer.m_reconnects = true;
        return CURL_PREREQFUNC_ABORT;
    }
    return again && transfer.m_request.body ? CURL_PREREQFUNC_ABORT : CURL_PREREQFUNC_OK;
}

} // namespace pixpress
