// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/transfer.h"

#include "service/address.h"
#include "service/transporterrors.h"

#include <algorithm>
#include <new>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr int maxRedirects = 10;

// How much memory is reserved on the word of an answer's head alone.
constexpr qint64 maxReserved = 512 << 20;

// Of all heads of a request, interim answers and trailers included. libcurl keeps them.
constexpr size_t largestHead = 256 << 10;

// Limits the body of a failure, which explains it in a few words.
constexpr qint64 largestExplanation = 1 << 20;

// libcurl 8.6 and later returns it for a head beyond its own bounds.
constexpr int codeTooLarge = 100;

const QString answerTooLarge = u"The server's answer is too large."_s;

constexpr long receiveBuffer = 512 << 10;

constexpr long sendBuffer = 64 << 10;

bool isSameOrigin(const QUrl &a, const QUrl &b)
{
    const auto port = [](const QUrl &url) {
        return url.port(url.scheme() == "https"_L1 ? 443 : 80);
    };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

/// The proxy that the environment names for https, in libcurl's order. libcurl itself honours
/// "no_proxy".
QByteArray environmentProxy()
{
    for (const char *name : {"https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"})
        if (const QByteArray value = qgetenv(name); !value.isEmpty())
            return value;
    return {};
}

/// Host and port, without credentials.
QString nameOfProxy(const QByteArray &proxy)
{
    const QUrl url(QString::fromUtf8(proxy.contains("://") ? proxy : "http://" + proxy));
    return url.port() < 0 ? url.host() : u"%1:%2"_s.arg(url.host()).arg(url.port());
}

curl_slist *append(curl_slist *list, const QByteArray &line)
{
    return curl_slist_append(list, line.constData());
}

} // namespace

EasyHandle Transfer::makeHandle(const HttpLimits &limits, Connections &connections)
{
    EasyHandle handle(curl_easy_init());
    CURL *const easy = handle.get();
    const auto set = [easy](CURLoption option, auto value) {
        curl_easy_setopt(easy, option, value);
    };
    if (!limits.caBundle.isEmpty())
        set(CURLOPT_CAINFO, limits.caBundle.toUtf8().constData());
    set(CURLOPT_OPENSOCKETFUNCTION, &Transfer::openSocket);
    set(CURLOPT_CLOSESOCKETFUNCTION, &Connections::close);
    set(CURLOPT_CLOSESOCKETDATA, &connections);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // do not wait for a name server when the program ends
    set(CURLOPT_TCP_NODELAY, 1L);
    // HTTP/2 has ways of its own to repeat a request.
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_BUFFERSIZE, receiveBuffer);
    set(CURLOPT_UPLOAD_BUFFERSIZE, sendBuffer);
    set(CURLOPT_PREREQFUNCTION, &Transfer::beforeRequest);
    set(CURLOPT_HEADERFUNCTION, &Transfer::receiveHeader);
    set(CURLOPT_WRITEFUNCTION, &Transfer::receiveBody);
    return handle;
}

Transfer::Transfer(quint64 id, HttpRequest request, EasyHandle handle, const HttpLimits &limits,
                   Connections &connections)
    : m_id(id),
      m_limits(limits),
      m_connections(connections),
      m_request(std::move(request)),
      m_easy(std::move(handle))
{
    const auto set = [this](CURLoption option) { curl_easy_setopt(m_easy.get(), option, this); };
    set(CURLOPT_OPENSOCKETDATA);
    set(CURLOPT_PREREQDATA);
    set(CURLOPT_HEADERDATA);
    set(CURLOPT_WRITEDATA);
    prepare();
}

/// Sets all that differs from request to request.
void Transfer::prepare()
{
    m_response = {};
    m_attempts = 0;
    m_headIsComplete = false;
    m_headSize = 0;
    m_isCut = false;

    const auto set = [this](CURLoption option, auto value) {
        curl_easy_setopt(m_easy.get(), option, value);
    };

    // Credentials in an address are nobody's business here; a fragment is not for servers.
    const QByteArray url = m_request.url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    const bool secure = m_request.url.scheme() == "https"_L1;
    set(CURLOPT_URL, url.constData());
    set(CURLOPT_PROTOCOLS_STR, secure ? "https" : "http");
    m_proxy.clear();
    if (!isThisMachine(m_request.url))
        m_proxy = m_request.proxy.isEmpty() ? environmentProxy() : m_request.proxy;
    set(CURLOPT_PROXY, m_proxy.constData()); // empty: none

    set(CURLOPT_FRESH_CONNECT, m_reconnects ? 1L : 0L);

    curl_slist *headers = nullptr;
    if (!m_request.authorization.isEmpty())
        headers = append(headers, "Authorization: " + m_request.authorization);
    // Without a value libcurl leaves out the header that it would add to a POST.
    headers = append(headers, "Content-Type:" + (m_request.contentType.isEmpty()
                                                     ? QByteArray()
                                                     : " " + m_request.contentType));
    // Nor does it ask whether a large body is welcome: a server that does not know the question
    // costs a second, one that says 417 the upload. An early answer is seen without it.
    headers = append(headers, "Expect:");
    set(CURLOPT_HTTPHEADER, headers);
    m_headers.reset(headers);

    const auto &body = m_request.body;
    set(CURLOPT_POSTFIELDS, body ? body->constData() : nullptr);
    set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body ? body->size() : -1));
    set(body ? CURLOPT_POST : CURLOPT_HTTPGET, 1L);
}

Transfer::Clock::time_point Transfer::deadline() const
{
    const Relay *const relay = m_connections.find(m_connection);
    // Connecting and waiting for the answer have a silence each.
    const auto lastMove = relay ? std::max(relay->lastMove(), m_connected) : m_connected;
    return std::min(lastMove + m_limits.longestSilence, m_started + m_limits.longestTransfer);
}

std::optional<HttpResult> Transfer::finish(CURLcode code)
{
    if (m_refused)
        return std::unexpected(*std::move(m_refused));
    if (code == CURLE_ABORTED_BY_CALLBACK && m_reconnects && m_attempts == 1) {
        prepare(); // nothing has been sent yet
        return std::nullopt;
    }
    // Before that it says this of a line.
    const bool lineIsTooLarge = code == CURLE_OUT_OF_MEMORY && m_headSize > 0 && !m_headIsComplete;
    if (lineIsTooLarge || static_cast<int>(code) == codeTooLarge)
        return std::unexpected(otherError(answerTooLarge));
    if (code != CURLE_OK && !m_isCut)
        return std::unexpected(m_proxy.isEmpty() ? describe(code) : describeWithProxy(code));
    if (!m_headIsComplete) // which libcurl takes for an answer without a body
        return std::unexpected(describe(CURLE_PARTIAL_FILE));

    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
    m_response.status = static_cast<int>(status);
    readHeaders();

    const bool repeatsMethod = status == 307 || status == 308;
    const bool redirects = status == 301 || status == 302 || status == 303 || repeatsMethod;
    const auto location = m_response.header("location");
    if (!redirects || !location || (m_request.body && repeatsMethod))
        return std::move(m_response);
    const QUrl target(QString::fromUtf8(*location), QUrl::StrictMode);
    return follow(target.isValid() ? m_request.url.resolved(target) : target);
}

/// As describe(), with the proxy's name where it is what may have failed.
TransportError Transfer::describeWithProxy(CURLcode code) const
{
    const QString proxy = nameOfProxy(m_proxy);
    long status = 0; // of the proxy's answer
    curl_easy_getinfo(handle(), CURLINFO_HTTP_CONNECTCODE, &status);
    if (status >= 300)
        return otherError(
            u"The proxy server %1 refused the connection (status %2)."_s.arg(proxy).arg(status));
    if (code == CURLE_COULDNT_RESOLVE_PROXY)
        return otherError(u"The proxy server %1 could not be found."_s.arg(proxy));
    if (code == CURLE_COULDNT_CONNECT || code == CURLE_PROXY)
        return otherError(u"Could not connect through the proxy server %1."_s.arg(proxy));
    return describe(code);
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
    while ((header = curl_easy_nextheader(handle(), CURLH_HEADER, -1, header))) {
        QByteArray &value = m_response.headers[QByteArray(header->name).toLower()];
        value += (value.isNull() ? "" : ", ") + QByteArray(header->value);
    }
}

/// Called for each line of a head, also of the interim answers before the answer, and for trailers.
size_t Transfer::receiveHeader(char *data, size_t size, size_t count, void *self)
{
    auto &transfer = *static_cast<Transfer *>(self);
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
    // No exception may pass through libcurl, which is C.
    try {
        transfer.keep({data, static_cast<qsizetype>(size * count)});
    } catch (const std::bad_alloc &) {
        transfer.m_refused = outOfMemory();
    }
    return transfer.m_refused || transfer.m_isCut ? CURL_WRITEFUNC_ERROR : size * count;
}

void Transfer::keep(QByteArrayView piece)
{
    QByteArray &body = m_response.body;
    long status = 0;
    curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
    if (status >= 400) {
        body.append(piece.first(std::min(piece.size(), largestExplanation - body.size())));
        m_isCut = body.size() == largestExplanation;
        return;
    }
    const qint64 largest = std::min(m_limits.largestAnswer, m_request.largestAnswer);
    if (body.isEmpty()) {
        curl_off_t announced = -1;
        curl_easy_getinfo(handle(), CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &announced);
        body.reserve(std::clamp<qint64>(announced, 0, std::min(maxReserved, largest)));
    }
    if (body.size() + piece.size() > largest)
        m_refused = otherError(answerTooLarge);
    else
        body.append(piece);
}

curl_socket_t Transfer::openSocket(void *self, curlsocktype, curl_sockaddr *address)
{
    return static_cast<Transfer *>(self)->m_connections.open(self, *address);
}

/// Called when a connection for the request is there.
/// libcurl repeats a request when the kept-alive connection it chose turns out dead. The server may
/// have received the first one, so that for an upload this would be a second compression.
int Transfer::beforeRequest(void *self, char *serverAddress, char *ownAddress, int serverPort,
                            int ownPort)
{
    auto &transfer = *static_cast<Transfer *>(self);
    transfer.m_connected = Clock::now();
    const bool again = ++transfer.m_attempts > 1;
    if (again && transfer.m_request.body)
        return CURL_PREREQFUNC_ABORT;
    try {
        const QByteArray name = serverAddress + (' ' + QByteArray::number(serverPort)) + ' ' +
                                ownAddress + ' ' + QByteArray::number(ownPort);
        return transfer.useConnection(name) ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
    } catch (const std::bad_alloc &) {
        transfer.m_refused = outOfMemory();
        return CURL_PREREQFUNC_ABORT;
    }
}

/// False when the kept-alive connection chosen for this request has something to say already, or
/// has ended: an answer that nobody asked for would be taken for the one to this request.
bool Transfer::useConnection(const QByteArray &name)
{
    m_connection = name;
    if (Relay *const known = m_connections.find(m_connection)) {
        known->relay();
        m_reconnects = known->hasInput();
        return !m_reconnects;
    }
    if (!m_connections.add(this, name))
        m_refused = otherError(u"Too many files and connections are open."_s);
    return !m_refused;
}

} // namespace pixpress
