// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/thumbnails.h"

#include "pictures/thumbnail.h"
#include "pipeline/descriptor.h"

#include <QPromise>

#include <fcntl.h>

namespace pixpress {

namespace {

constexpr int thumbnailPixels = 72;

QImage toQImage(const Thumbnail &thumbnail)
{
    return QImage(reinterpret_cast<const uchar *>(thumbnail.rgba.constData()), thumbnail.width,
                  thumbnail.height, 4 * qsizetype{thumbnail.width}, QImage::Format_RGBA8888)
        .copy();
}

} // namespace

QImage generateThumbnail(const QUrl &file, const std::atomic_bool &stopped)
{
    const auto opened = Descriptor::open(file.toLocalFile(), O_RDONLY);
    if (!opened || !opened->size())
        return {};
    return toQImage(makeThumbnail(opened->get(), thumbnailPixels, stopped));
}

Thumbnails::Thumbnails()
{
    m_pool.setThreadPriority(QThread::LowPriority);
}

Thumbnails::~Thumbnails()
{
    m_stopped = true;
    m_pool.clear();
    m_pool.waitForDone();
}

QFuture<QImage> Thumbnails::request(const QUrl &file)
{
    // std::function, which the pool takes, must be copyable; a promise is not.
    const auto promise = std::make_shared<QPromise<QImage>>();
    m_pool.start(
        [this, promise, file] {
            promise->start();
            if (!promise->isCanceled())
                promise->addResult(generateThumbnail(file, m_stopped));
            promise->finish();
        },
        ++m_requests);
    return promise->future();
}

} // namespace pixpress
