// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/handler.h"

#include "localservice/credentials.h"

#include <algorithm>
#include <thread>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr qint64 maxOptionsBody = 1 << 20;

int coreCount()
{
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

Refusal serviceStopped()
{
    return refusalFor({CodecFault::stopped, u"The service is being stopped."_s});
}

Refusal noSuchOutput()
{
    return {404, "NotFound", u"There is no such output, or it is no longer kept."_s};
}

Refusal limitReached()
{
    return {429, "TooManyRequests", u"The monthly limit of compressions has been reached."_s};
}

/// For answers that are given before the request's body has arrived.
void closeEarly(httplib::Response &response)
{
    response.set_header("Connection", "close");
    ConnectionServer::closeAfterAnswer();
}

} // namespace

RequestHandler::RequestHandler(LocalServiceConfig config, int connectionCount)
    : m_config(std::move(config)),
      m_store(m_config.storeBytes),
      m_meter(m_config.initialCount, m_config.monthlyLimit),
      m_bodies(2 * m_config.maxBody, connectionCount),
      m_pixels(m_config.maxPixels, coreCount())
{
}

void RequestHandler::attachTo(ConnectionServer &server)
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

void RequestHandler::stop()
{
    m_stopped = true;
    m_bodies.close();
    m_pixels.close();
}

/// What is wrong with a request as far as its head tells, credentials before all that concerns
/// its content.
std::optional<Refusal> RequestHandler::refuseHead(const httplib::Request &request) const
{
    if (const auto refusal = refuseWebPage(request, m_port))
        return refusal;
    const auto shown = QByteArray::fromStdString(request.get_header_value("Authorization"));
    if (!m_config.key || !isAuthorised(shown, m_config.key()))
        return Refusal{401, "Unauthorized", u"The API key is missing or not valid."_s};
    if (const auto refusal = refuseForm(request, maxBodyOf(request)))
        return refusal;
    return request.method == "POST" && m_meter.isUsedUp() ? std::optional(limitReached())
                                                          : std::nullopt;
}

qint64 RequestHandler::maxBodyOf(const httplib::Request &request) const
{
    return isOutput(request) ? maxOptionsBody : m_config.maxBody;
}

/// Whether the request is answered thereby, as everything is that needs no body.
bool RequestHandler::handleHead(const httplib::Request &request, httplib::Response &response)
{
    if (!hasBody(request) && answerFault(request, response))
        return true;
    if (const auto refusal = refuseHead(request)) {
        answer(response, *refusal);
        if (refusal->status != 401 && refusal->status != 403)
            addCount(response);
        if (hasBody(request))
            closeEarly(response);
        return true;
    }
    if (request.method == "POST")
        return false;
    fetch(request, response);
    return true;
}

void RequestHandler::handleBody(const httplib::Request &request, httplib::Response &response,
                                const httplib::ContentReader &reader)
{
    const qint64 limit = maxBodyOf(request);
    const auto length = bodyLength(request);
    const auto pass = m_bodies.enter(length.value_or(limit));
    if (!pass)
        return answer(response, serviceStopped());

    QByteArray body;
    body.reserve(length.value_or(0));
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

bool RequestHandler::answerFault(const httplib::Request &request, httplib::Response &response) const
{
    if (!m_config.fault)
        return false;
    const auto fault = m_config.fault(QByteArray::fromStdString(request.method),
                                      QByteArray::fromStdString(request.path));
    if (!fault)
        return false;
    response.status = fault->status;
    response.set_content(fault->body.toStdString(), "application/json");
    return true;
}

void RequestHandler::fetch(const httplib::Request &request, httplib::Response &response) const
{
    if (const auto entry = m_store.find(outputIdOf(request)))
        answerPicture(response, entry->compressed);
    else
        answer(response, noSuchOutput());
    addCount(response);
}

void RequestHandler::shrink(const QByteArray &body, httplib::Response &response)
{
    const auto info = inspect(body, m_config.maxPixels);
    if (!info)
        return answer(response, refusalFor(info.error()));
    const auto encoded = compressOnce(body, *info, {});
    if (!encoded)
        return answer(response, encoded.error());
    const QByteArray id = m_store.add({body, *encoded});
    const QByteArray url = baseAddress() + outputPrefix.data() + id;
    answerDescription(response, body.size(), *info, *encoded, url);
}

void RequestHandler::rework(const httplib::Request &request, const QByteArray &body,
                            httplib::Response &response)
{
    const auto entry = m_store.find(outputIdOf(request));
    if (!entry)
        return answer(response, noSuchOutput());
    const auto options = parseRequestOptions(body);
    if (!options)
        return answer(response, {400, "BadRequest", options.error()});
    if (*options == RequestOptions{})
        return answerPicture(response, entry->compressed);
    const auto info = inspect(entry->original, m_config.maxPixels);
    if (!info)
        return answer(response, refusalFor(info.error()));
    const auto encoded = compressOnce(entry->original, *info, *options);
    if (!encoded)
        return answer(response, encoded.error());
    answerPicture(response, *encoded);
}

/// Counted when it succeeds.
std::expected<Encoded, Refusal> RequestHandler::compressOnce(const QByteArray &original,
                                                             const PictureInfo &info,
                                                             const RequestOptions &options)
{
    auto reservation = m_meter.reserve();
    if (!reservation)
        return std::unexpected(limitReached());
    const auto pass = m_pixels.enter(info.pixels());
    if (!pass)
        return std::unexpected(serviceStopped());
    auto encoded = compress(original, options, m_config.maxPixels, m_stopped);
    if (!encoded)
        return std::unexpected(refusalFor(encoded.error()));
    reservation->count();
    return *std::move(encoded);
}

void RequestHandler::addCount(httplib::Response &response) const
{
    if (m_config.counting)
        response.set_header("Compression-Count", std::to_string(m_meter.count()));
}

} // namespace pixpress
