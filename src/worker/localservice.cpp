// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/localservice.h"

#include <coroutine>

using namespace Qt::StringLiterals;

namespace pixpress {

/// What a coroutine awaits to get a compressed picture.
class LocalService::Reply
{
public:
    Reply(LocalService &service, QByteArray picture, CompressionOptions options)
        : m_service(service), m_picture(std::move(picture)), m_options(std::move(options))
    {
    }

    bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> waiting)
    {
        m_coroutine = waiting;
        const quint64 id = m_service.m_worker.compress(m_picture, m_options, [this](auto result) {
            m_service.m_waiting.removeIf([this](auto entry) { return entry.value() == this; });
            resume(std::move(result));
        });
        m_service.m_waiting.insert(id, this);
        m_picture.clear(); // the worker has a copy
    }
    std::expected<Compressed, QString> await_resume() { return std::move(m_result); }

    void resume(std::expected<Compressed, QString> result)
    {
        m_result = std::move(result);
        m_coroutine.resume();
    }

private:
    LocalService &m_service;
    QByteArray m_picture;
    const CompressionOptions m_options;
    std::expected<Compressed, QString> m_result;
    std::coroutine_handle<> m_coroutine;
};

LocalService::~LocalService()
{
    const auto waiting = std::exchange(m_waiting, {});
    for (const auto &[id, reply] : waiting.asKeyValueRange()) {
        m_worker.cancel(id);
        reply->resume(std::unexpected(u"The compression was cancelled."_s));
    }
}

QCoro::Task<LocalService::Result<ShrinkResponse>>
LocalService::shrink(QByteArray imageData, std::optional<CompressionOptions> options, QString)
{
    const qint64 inputSize = imageData.size();
    auto compressed =
        co_await Reply(*this, std::move(imageData), options.value_or(CompressionOptions()));
    if (!compressed)
        co_return std::unexpected(ServiceError(LocalError{compressed.error()}));

    const QUrl url(u"memory:%1"_s.arg(++m_lastOutput));
    const qint64 outputSize = compressed->bytes.size();
    m_outputs.insert(url, std::move(compressed->bytes));
    co_return ShrinkResponse{.outputURL = url,
                             .inputSize = inputSize,
                             .inputType = rawValue(compressed->inputFormat),
                             .outputSize = outputSize,
                             .outputType = rawValue(compressed->outputFormat),
                             .outputWidth = compressed->width,
                             .outputHeight = compressed->height};
}

QCoro::Task<LocalService::Result<std::pair<QByteArray, qint64>>>
LocalService::fetchOutput(QUrl outputURL, std::optional<CompressionOptions>, QString)
{
    co_return std::pair(m_outputs.take(outputURL), qint64(0));
}

} // namespace pixpress
