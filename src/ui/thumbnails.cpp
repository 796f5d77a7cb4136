// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/thumbnails.h"

#include "pictures/thumbnail.h"
#include "pipeline/descriptor.h"

#include <QPromise>

#include <limits>
#include <memory>
#include <utility>

#include <fcntl.h>
#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

namespace pixpress {

namespace {

constexpr int thumbnailPixels = 72;

QImage toQImage(const Thumbnail &thumbnail)
{
    return QImage(reinterpret_cast<const uchar *>(thumbnail.rgba.constData()), thumbnail.width,
                  thumbnail.height, 4 * qsizetype{thumbnail.width}, QImage::Format_RGBA8888)
        .copy();
}

/// Lets the window go first. Qt's priorities have no effect under Linux's usual scheduling; there
/// the niceness of a thread has one, and libvips' own threads, which this one starts, inherit it.
void yieldToTheWindow()
{
#ifdef Q_OS_LINUX
    [[maybe_unused]] static thread_local const int lowered = ::setpriority(PRIO_PROCESS, 0, 10);
#endif
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
            m_pool.setMaxThreadCount(QThread::idealThreadCount());
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
            yieldToTheWindow();
            promise->start();
            if (!promise->isCanceled())
                promise->addResult(generateThumbnail(file, m_stopped));
            promise->finish();
        },
        ++m_requests);
    return promise->future();
}

} // namespace pixpress
