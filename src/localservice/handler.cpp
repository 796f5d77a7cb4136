// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "localservice/handler.h"

#include "localservice/credentials.h"

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr qint64 maxOptionsBody = 1 << 20;

/// For answers that are given before the request's body has arrived.
void closeEarly(httplib::Response &response)
{
    response.set_header("Connection", "close");
    ConnectionServer::closeAfterAnswer();
}

} // namespace

RequestHandler::RequestHandler(LocalServiceConfig config, int connectionCount)
    : m_config(std::move(config)),
      m_compressor(m_config),
      m_bodies(2 * m_config.maxBody, connectionCount)
{
}

void RequestHandler::attachTo(httplib::Server &server)
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
    server.set_exception_handler([](const auto &, auto &response, const auto &) {
        answer(response, {500, "InternalServerError", u"There is not enough memory."_s});
        closeEarly(response);
    });
    server.Post("/.*", [this](const auto &request, auto &response, const auto &reader) {
        handleBody(request, response, reader);
    });
}

void RequestHandler::stop()
{
    m_bodies.close();
    m_compressor.stop();
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
    return request.method == "POST" && m_compressor.isUsedUp() ? std::optional(limitReached())
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
    if (hasBody(request))
        closeEarly(response);
    return true;
}

void RequestHandler::handleBody(const httplib::Request &request, httplib::Response &response,
                                const httplib::ContentReader &reader)
{
    const qint64 limit = maxBodyOf(request);
    const auto length = bodyLength(request);
    const auto pass = m_bodies.enter(length.value_or(limit));
    if (!pass)
        return answer(response, refusalFor(serviceStopped()));

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
        rework(outputIdOf(request), body, response);
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
    if (const auto output = m_compressor.output(outputIdOf(request)))
        answerPicture(response, *output);
    else
        answer(response, output.error());
    addCount(response);
}

void RequestHandler::shrink(const QByteArray &body, httplib::Response &response)
{
    const auto upload = m_compressor.shrink(body);
    if (!upload)
        return answer(response, upload.error());
    const QByteArray url = baseAddress() + outputPrefix.data() + upload->id;
    answerDescription(response, body.size(), upload->info, upload->output, url);
}

void RequestHandler::rework(const QByteArray &id, const QByteArray &body,
                            httplib::Response &response)
{
    if (const auto output = m_compressor.rework(id, body))
        answerPicture(response, *output);
    else
        answer(response, output.error());
}

void RequestHandler::addCount(httplib::Response &response) const
{
    if (m_config.counting)
        response.set_header("Compression-Count", std::to_string(m_compressor.count()));
}

} // namespace pixpress
