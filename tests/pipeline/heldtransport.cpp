// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/heldtransport.h"

#include "service/curlworker.h"

#include <QList>

#include <functional>
#include <utility>

using namespace Qt::StringLiterals;

namespace pixpress::test::held {

namespace {

struct Held
{
    const void *client = nullptr;
    bool upload = false;
    std::function<void(HttpResult)> end;
};

QList<Held> unanswered;
QStringList all;

QString toText(const HttpRequest &request)
{
    return u"%1 %2 by %3%4 %5"_s.arg(
        request.body ? u"POST"_s : u"GET"_s, request.url.path(),
        QString::fromLatin1(QByteArray::fromBase64(request.authorization.mid(6))),
        request.contentType.isEmpty() ? QString()
                                      : u" as "_s + QString::fromLatin1(request.contentType),
        QString::fromLatin1(request.body.value_or(QByteArray())));
}

} // namespace

const QStringList &made()
{
    return all;
}

qsizetype waiting()
{
    return unanswered.size();
}

bool isUpload(qsizetype which)
{
    return unanswered.at(which).upload;
}

void answer(qsizetype which, HttpResult result)
{
    unanswered.takeAt(which).end(std::move(result));
}

void forget()
{
    all.clear();
}

} // namespace pixpress::test::held

// What follows stands for the whole of the real client: the linker then has no use for that one.
namespace pixpress {

using namespace test;

std::optional<QByteArray> HttpResponse::header(const QByteArray &lowerCaseName) const
{
    const auto found = headers.constFind(lowerCaseName);
    return found == headers.cend() ? std::nullopt : std::optional(*found);
}

HttpClient::HttpClient(HttpLimits /*limits*/) {}

HttpClient::~HttpClient()
{
    held::unanswered.removeIf([this](const auto &entry) { return entry.client == this; });
    for (Reply *reply : std::exchange(m_waiting, {})) {
        reply->m_result =
            std::unexpected(TransportError{TransportError::Case::cancelled, u"Cancelled."_s});
        reply->m_coroutine.resume();
    }
}

HttpClient::Reply HttpClient::send(HttpRequest request)
{
    return {*this, std::move(request)};
}

void HttpClient::start(Reply &reply, HttpRequest request)
{
    const quint64 id = ++m_lastId;
    m_waiting.insert(id, &reply);
    held::all.append(held::toText(request));
    held::unanswered.append(
        {.client = this,
         .upload = request.url.path() == u"/shrink",
         .end = [this, id](HttpResult result) { finish(id, std::move(result)); }});
}

void HttpClient::finish(quint64 id, HttpResult result)
{
    Reply *const reply = m_waiting.take(id);
    reply->m_result = std::move(result);
    reply->m_coroutine.resume();
}

HttpClient::Reply::Reply(HttpClient &client, HttpRequest request)
    : m_client(client), m_request(std::move(request))
{
}

bool HttpClient::Reply::await_ready()
{
    return false;
}

void HttpClient::Reply::await_suspend(std::coroutine_handle<> waiting)
{
    m_coroutine = waiting;
    m_client.start(*this, std::move(m_request));
}

} // namespace pixpress
