// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/thumbnails.h"

#include "pictures/thumbnail.h"
#include "pipeline/descriptor.h"

#include <QPromise>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

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

/// A core is left to the window. A lower priority would say so better, but on Linux the threads
/// that libvips begins for a thumbnail inherit it, and compress pictures later: beside other
/// programs that are busy those would take many times as long, and seem to hang.
int threadCount()
{
    return std::max(1, QThread::idealThreadCount() - 1);
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
    m_pool.setMaxThreadCount(1); // until prepare() is done
}

Thumbnails::~Thumbnails()
{
    m_stopped = true;
    m_pool.clear();
    m_pool.waitForDone();
}

void Thumbnails::prepare()
{
    if (std::exchange(m_isPrepared, true))
        return;
    // On the only thread: glibc lets no thread begin while a library is being loaded, so that the
    // window would stand still until then for each further one.
    m_pool.start(
        [this] {
            makeThumbnail(-1, thumbnailPixels, m_stopped); // no picture, but all that one needs
            m_pool.setMaxThreadCount(threadCount());
        },
        std::numeric_limits<int>::max());
}

QFuture<QImage> Thumbnails::request(const QUrl &file)
{
    prepare();
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
