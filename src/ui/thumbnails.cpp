// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/thumbnails.h"

#include "pipeline/descriptor.h"

#include <QPointer>

#include <algorithm>
#include <utility>

#include <fcntl.h>

namespace pixpress {

namespace {

constexpr int thumbnailPixels = 72;

/// Leaves a core to the window, but at least two, so that one slow picture does not hold up all.
int mostRunning()
{
    return std::max(2, QThread::idealThreadCount() - 1);
}

QImage toQImage(const Thumbnail &thumbnail)
{
    return QImage(reinterpret_cast<const uchar *>(thumbnail.rgba.constData()), thumbnail.width,
                  thumbnail.height, 4 * qsizetype{thumbnail.width}, QImage::Format_RGBA8888)
        .copy();
}

} // namespace

Thumbnails::Thumbnails(Worker &worker) : m_worker(worker)
{
    m_openers.setMaxThreadCount(mostRunning());
}

Thumbnails::~Thumbnails()
{
    m_openers.waitForDone();
}

QFuture<QImage> Thumbnails::request(const QUrl &file)
{
    auto pending = std::make_shared<Pending>();
    pending->file = file;
    pending->promise.start();
    m_waiting.push_back(pending);
    startNext();
    return pending->promise.future();
}

void Thumbnails::startNext()
{
    while (m_running < mostRunning() && !m_waiting.empty()) {
        const PendingPointer pending = std::move(m_waiting.back());
        m_waiting.pop_back();
        if (pending->promise.isCanceled())
            pending->promise.finish();
        else
            start(pending);
    }
}

void Thumbnails::start(const PendingPointer &pending)
{
    ++m_running;
    m_openers.start([this, pending] {
        auto opened = std::make_shared<Descriptor::Result<Descriptor>>(
            Descriptor::open(pending->file.toLocalFile(), O_RDONLY));
        const bool isFile = *opened && (*opened)->size();
        QMetaObject::invokeMethod(
            this,
            [this, pending, opened, isFile] {
                if (!isFile)
                    return finish(pending, {});
                m_worker.makeThumbnail(
                    (*opened)->get(), thumbnailPixels,
                    [self = QPointer(this), pending](const auto &thumbnail) {
                        if (self)
                            self->finish(pending, thumbnail ? toQImage(*thumbnail) : QImage());
                    });
            },
            Qt::QueuedConnection);
    });
}

void Thumbnails::finish(const PendingPointer &pending, const QImage &image)
{
    --m_running;
    pending->promise.addResult(image);
    pending->promise.finish();
    startNext();
}

} // namespace pixpress
