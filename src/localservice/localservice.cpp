// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/localservice.h"

#include "localservice/answers.h"
#include "localservice/codec.h"
#include "localservice/connections.h"
#include "localservice/credentials.h"
#include "localservice/gate.h"
#include "localservice/requestoptions.h"
#include "localservice/store.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr size_t connectionCount = 32;
constexpr qint64 maxOptionsBody = 1 << 20;

// What a picture takes while it is worked on: its pixels, a converted or resized copy, and what the
// hungriest of the encoders keeps besides.
constexpr qint64 bytesPerPixel = 24;

qint64 physicalMemory()
{
    return static_cast<qint64>(sysconf(_SC_PHYS_PAGES)) * sysconf(_SC_PAGESIZE);
}

int coreCount()
{
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

constexpr std::string_view outputPrefix = "/output/";

bool isOutput(const httplib::Request &request)
{
    return request.path.starts_with(outputPrefix);
}

QByteArray idOf(const httplib::Request &request)
{
    return QByteArray::fromStdString(request.path.substr(outputPrefix.size()));
}

bool hasBody(const httplib::Request &request)
{
    return request.has_header("Transfer-Encoding") ||
           request.get_header_value<uint64_t>("Content-Length") > 0;
}

QString stoppedMessage()
{
    return u"The service is being stopped."_s;
}

Refusal inputMissing()
{
    return {400, "InputMissing", u"The request has no content."_s};
}

Refusal noSuchOutput()
{
    return {404, "NotFound", u"There is no such output, or it is no longer kept."_s};
}

Refusal tooLarge(qint64 limit)
{
    return {413, "TooLarge", u"The content is larger than %1 bytes."_s.arg(limit)};
}

/// For answers that are given before the request's body has arrived.
void closeEarly(httplib::Response &response)
{
    response.set_header("Connection", "close");
    ConnectionServer::closeAfterAnswer();
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
    explicit Private(LocalServiceConfig given);

    std::optional<Refusal> refusalBeforeBody(const httplib::Request &request) const;
    qint64 maxBodyOf(const httplib::Request &request) const;
    bool handleHead(const httplib::Request &request, httplib::Response &response);
    void handleBody(const httplib::Request &request, httplib::Response &response,
                    const httplib::ContentReader &reader);
    bool answerFault(const httplib::Request &request, httplib::Response &response) const;
    void get(const httplib::Request &request, httplib::Response &response);
    void shrink(const QByteArray &body, httplib::Response &response);
    void rework(const httplib::Request &request, const QByteArray &body,
                httplib::Response &response);
    std::expected<Encoded, CodecError> compressWithin(const QByteArray &original,
                                                      const PictureInfo &info,
                                                      const RequestOptions &options);
    void addCount(httplib::Response &response) const;
    QByteArray baseAddress() const { return "http://127.0.0.1:" + QByteArray::number(port); }

    const LocalServiceConfig config;
    Store store;
    std::atomic<qint64> count;
    std::atomic_bool stopped = false;
    // Bodies wait in the sender's hands, and pixels until there is a core and memory for them.
    Gate bodies;
    Gate pixels;
    int port = 0;
    ConnectionServer server{connectionCount};
    std::thread listener;
};

LocalService::Private::Private(LocalServiceConfig given)
    : config(std::move(given)),
      store(config.storeBytes),
      count(config.initialCount),
      bodies(2 * config.maxBody, connectionCount),
      pixels(config.maxPixels, coreCount())
{
    server.set_pre_routing_handler([this](const auto &request, auto &response) {
        return handleHead(request, response) ? ConnectionServer::HandlerResponse::Handled
                                             : ConnectionServer::HandlerResponse::Unhandled;
    });
    server.set_expect_100_continue_handler([this](const auto &request, auto &response) {
        if (!hasBody(request) || !handleHead(request, response))
            return 100;
        // On this path the library leaves the length out.
        response.set_header("Content-Length", std::to_string(response.body.size()));
        return response.status;
    });
    server.set_exception_handler([](const auto &, auto &response, std::exception_ptr) {
        answer(response, {500, "InternalServerError", u"There is not enough memory."_s});
        closeEarly(response);
    });
    server.Post("/.*", [this](const auto &request, auto &response, const auto &reader) {
        handleBody(request, response, reader);
    });
}

/// What is wrong with a request as far as its head tells, credentials before all else.
std::optional<Refusal>
LocalService::Private::refusalBeforeBody(const httplib::Request &request) const
{
    const auto header = QByteArray::fromStdString(request.get_header_value("Authorization"));
    if (!config.key || !isAuthorised(header, config.key()))
        return Refusal{401, "Unauthorized", u"The API key is missing or not valid."_s};
    if (request.path != "/shrink" && !isOutput(request))
        return Refusal{404, "NotFound", u"There is nothing at this address."_s};
    const bool isAllowed =
        request.method == "POST" ||
        (isOutput(request) && (request.method == "GET" || request.method == "HEAD"));
    if (!isAllowed)
        return Refusal{405, "MethodNotAllowed", u"This address does not take such requests."_s};
    if (request.method != "POST")
        return std::nullopt;
    if (!hasBody(request))
        return inputMissing();
    if (request.is_multipart_form_data())
        return Refusal{415, "UnsupportedMediaType", u"The content must be the image alone."_s};
    if (request.get_header_value<uint64_t>("Content-Length") >
        static_cast<uint64_t>(maxBodyOf(request)))
        return tooLarge(maxBodyOf(request));
    if (config.monthlyLimit && count >= *config.monthlyLimit)
        return Refusal{429, "TooManyRequests",
                       u"The monthly limit of compressions has been reached."_s};
    return std::nullopt;
}

qint64 LocalService::Private::maxBodyOf(const httplib::Request &request) const
{
    return isOutput(request) ? maxOptionsBody : config.maxBody;
}

/// Whether the request is answered thereby, as everything is that needs no body.
bool LocalService::Private::handleHead(const httplib::Request &request, httplib::Response &response)
{
    if (!hasBody(request) && answerFault(request, response))
        return true;
    if (const auto refusal = refusalBeforeBody(request)) {
        answer(response, *refusal);
        if (refusal->status != 401)
            addCount(response);
        if (hasBody(request))
            closeEarly(response);
        return true;
    }
    if (request.method == "POST")
        return false;
    get(request, response);
    return true;
}

void LocalService::Private::handleBody(const httplib::Request &request, httplib::Response &response,
                                       const httplib::ContentReader &reader)
{
    const qint64 limit = maxBodyOf(request);
    const bool hasLength = request.has_header("Content-Length");
    const auto length =
        hasLength ? static_cast<qint64>(request.get_header_value<uint64_t>("Content-Length"))
                  : limit;
    const auto pass = bodies.enter(length);
    if (!pass)
        return answer(response, refusalFor({CodecFault::stopped, stoppedMessage()}));

    QByteArray body;
    if (hasLength)
        body.reserve(length);
    bool isTooLarge = false;
    const bool isRead = reader([&](const char *bytes, size_t size) {
        isTooLarge = body.size() + static_cast<qsizetype>(size) > limit;
        if (!isTooLarge)
            body.append(bytes, static_cast<qsizetype>(size));
        return !isTooLarge;
    });
    if (isTooLarge)
        answer(response, tooLarge(limit));
    else if (!isRead)
        answer(response, {400, "BadRequest", u"The content did not arrive completely."_s});
    if (!isRead)
        return closeEarly(response);

    if (answerFault(request, response))
        return;
    if (body.isEmpty())
        answer(response, inputMissing());
    else if (isOutput(request))
        rework(request, body, response);
    else
        shrink(body, response);
    addCount(response);
}

bool LocalService::Private::answerFault(const httplib::Request &request,
                                        httplib::Response &response) const
{
    if (!config.fault)
        return false;
    const auto fault = config.fault(QByteArray::fromStdString(request.method),
                                    QByteArray::fromStdString(request.path));
    if (!fault)
        return false;
    response.status = fault->status;
    response.set_content(fault->body.toStdString(), "application/json");
    return true;
}

void LocalService::Private::get(const httplib::Request &request, httplib::Response &response)
{
    if (const auto entry = store.find(idOf(request)))
        answerPicture(response, entry->compressed);
    else
        answer(response, noSuchOutput());
    addCount(response);
}

void LocalService::Private::shrink(const QByteArray &body, httplib::Response &response)
{
    const auto info = inspect(body, config.maxPixels);
    if (!info)
        return answer(response, refusalFor(info.error()));
    const auto encoded = compressWithin(body, *info, {});
    if (!encoded)
        return answer(response, refusalFor(encoded.error()));
    ++count;
    const QByteArray id = store.add({body, *encoded});
    const QByteArray url = baseAddress() + outputPrefix.data() + id;
    answerDescription(response, body.size(), *info, *encoded, url);
}

void LocalService::Private::rework(const httplib::Request &request, const QByteArray &body,
                                   httplib::Response &response)
{
    const auto entry = store.find(idOf(request));
    if (!entry)
        return answer(response, noSuchOutput());
    const auto options = parseRequestOptions(body);
    if (!options)
        return answer(response, {400, "BadRequest", options.error()});
    if (*options == RequestOptions{})
        return answerPicture(response, entry->compressed);
    const auto info = inspect(entry->original, config.maxPixels);
    const auto encoded =
        info ? compressWithin(entry->original, *info, *options) : std::unexpected(info.error());
    if (!encoded)
        return answer(response, refusalFor(encoded.error()));
    ++count;
    answerPicture(response, *encoded);
}

std::expected<Encoded, CodecError>
LocalService::Private::compressWithin(const QByteArray &original, const PictureInfo &info,
                                      const RequestOptions &options)
{
    const auto pass = pixels.enter(info.pixels());
    if (!pass)
        return std::unexpected(CodecError{CodecFault::stopped, stoppedMessage()});
    return compress(original, options, config.maxPixels, stopped);
}

void LocalService::Private::addCount(httplib::Response &response) const
{
    if (config.counting)
        response.set_header("Compression-Count", std::to_string(count.load()));
}

LocalService::LocalService(LocalServiceConfig config)
    : d(std::make_unique<Private>(std::move(config)))
{
}

LocalService::~LocalService()
{
    if (!d->listener.joinable())
        return;
    d->stopped = true;
    d->bodies.close();
    d->pixels.close();
    d->server.stop();
    d->listener.join();
}

std::expected<void, QString> LocalService::start()
{
    d->port = d->server.bind_to_any_port("127.0.0.1");
    if (d->port <= 0)
        return std::unexpected(u"The built-in service cannot listen on this machine."_s);
    d->listener = std::thread([this] { d->server.run(); });
    return {};
}

QUrl LocalService::baseURL() const
{
    return QUrl::fromEncoded(d->baseAddress());
}

qint64 LocalService::compressionCount() const
{
    return d->count;
}

} // namespace pixpress
