// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/process/server.h"

#include "codec/codec.h"
#include "codec/thumbnail.h"

#include <new>
#include <thread>

#include <sys/mman.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

const std::atomic_bool never = false;

/// The content of a sealed file, without a copy.
class Mapping
{
public:
    explicit Mapping(int descriptor)
    {
        const qint64 size = sealedSize(descriptor).value_or(0);
        if (size <= 0)
            return;
        void *address =
            ::mmap(nullptr, static_cast<size_t>(size), PROT_READ, MAP_SHARED, descriptor, 0);
        if (address != MAP_FAILED)
            m_bytes = QByteArray::fromRawData(static_cast<const char *>(address), size);
    }
    Mapping(const Mapping &) = delete;
    Mapping &operator=(const Mapping &) = delete;
    ~Mapping()
    {
        if (!m_bytes.isEmpty())
            ::munmap(const_cast<char *>(m_bytes.constData()), static_cast<size_t>(m_bytes.size()));
    }

    const QByteArray &bytes() const { return m_bytes; } ///< Empty if there is no such content.

private:
    QByteArray m_bytes;
};

/// Adds to a sum for as long as this object lives, if the sum then stays within the limit.
class Share
{
public:
    Share(std::atomic<qint64> &sum, qint64 amount, qint64 limit) : m_sum(sum), m_amount(amount)
    {
        qint64 before = sum;
        do {
            m_isGranted = before == 0 || before + amount <= limit;
        } while (m_isGranted && !sum.compare_exchange_weak(before, before + amount));
    }
    Share(const Share &) = delete;
    Share &operator=(const Share &) = delete;
    ~Share()
    {
        if (m_isGranted)
            m_sum -= m_amount;
    }

    bool isGranted() const { return m_isGranted; }

private:
    std::atomic<qint64> &m_sum;
    const qint64 m_amount;
    bool m_isGranted = false;
};

const QString noMemory = u"There is not enough memory for this image."_s;

} // namespace

void Server::run()
{
    while (auto packet = receivePacket(m_socket)) {
        auto request = Request::parse(*std::move(packet));
        if (!request)
            return;
        std::thread([this, request = *std::move(request)] { answer(request); }).detach();
    }
}

void Server::answer(const Request &request)
{
    Answer answer{.id = request.id, .result = Failed{noMemory}};
    try {
        if (const auto *thumbnail = std::get_if<ThumbnailRequest>(&request.work))
            answer.result = makeThumbnail(request.picture, thumbnail->longerSide);
        else
            answer.result =
                compress(request.picture, std::get<CompressRequest>(request.work).options);
    } catch (const std::bad_alloc &) {
    }
    if (!answer.send(m_socket)) {
        answer.result = Failed{noMemory};
        (void)answer.send(m_socket);
    }
}

decltype(Answer::result) Server::compress(const FileDescriptor &picture,
                                          const CompressionOptions &options)
{
    const auto request = toRequestOptions(options);
    if (!request)
        return Failed{request.error()};
    const Mapping original(picture.get());
    const auto info = inspect(original.bytes(), m_maxPixels);
    if (!info)
        return Failed{info.error().message};
    const Share share(m_pixels, info->pixels(), m_maxPixels);
    if (!share.isGranted())
        return Busy{};
    auto encoded = pixpress::compress(original.bytes(), *request, m_maxPixels, never);
    if (!encoded)
        return Failed{encoded.error().message};
    return Compressed{std::move(encoded->bytes), info->format, encoded->format, encoded->size.width,
                      encoded->size.height};
}

decltype(Answer::result) Server::makeThumbnail(const FileDescriptor &picture, int longerSide) const
{
    auto thumbnail = pixpress::makeThumbnail(picture.get(), longerSide, never);
    if (thumbnail.width == 0)
        return Failed{u"There is no picture."_s};
    return thumbnail;
}

} // namespace pixpress
