// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/thumbnailitem.h"

#include "model/formats.h"

#include <QPainter>
#include <QTimerEvent>

namespace pixpress {

namespace {

constexpr int threeFrames = 50; // milliseconds, of 60 frames a second

} // namespace

ThumbnailItem::ThumbnailItem(QQuickItem *parent) : PixelItem(parent)
{
    connect(&m_watcher, &QFutureWatcher<QImage>::finished, this, [this] {
        if (!m_watcher.isCanceled())
            setImage(m_watcher.result());
    });
}

ThumbnailItem::~ThumbnailItem()
{
    m_watcher.cancel();
}

void ThumbnailItem::setUrl(const QUrl &url)
{
    if (m_url == url)
        return;
    m_url = url;
    Q_EMIT urlChanged();
    if (isComponentComplete())
        load();
}

void ThumbnailItem::setTileColor(const QColor &color)
{
    if (m_tileColor == color)
        return;
    m_tileColor = color;
    update();
    Q_EMIT tileColorChanged();
}

QString ThumbnailItem::pathExtension() const
{
    return pixpress::pathExtension(m_url.fileName());
}

void ThumbnailItem::componentComplete()
{
    PixelItem::componentComplete();
    load();
}

void ThumbnailItem::load()
{
    m_watcher.cancel();
    m_watcher.setFuture({}); // what is done already, and about to be told, is no longer wanted
    setImage({});
    m_untilRequest.start(threeFrames, this);
}

void ThumbnailItem::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_untilRequest.timerId())
        return PixelItem::timerEvent(event);
    m_untilRequest.stop();
    if (m_thumbnails)
        m_watcher.setFuture(m_thumbnails->request(m_url));
}

void ThumbnailItem::setImage(const QImage &image)
{
    const bool wasReady = isReady();
    m_image = image;
    update();
    if (wasReady != isReady())
        Q_EMIT readyChanged();
}

void ThumbnailItem::paint(QPainter &painter, QSizeF size, qreal ratio)
{
    const QRectF tile({}, size);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_tileColor);
    painter.drawRoundedRect(tile, m_radius, m_radius);
    if (m_image.isNull())
        return;
    // Brought to the screen's pixels and cut before it becomes a brush, which repeats: it would mix
    // the opposite edge into the pixels at an edge.
    QRect shown({}, (size * ratio).toSize());
    const QImage filling =
        m_image.scaled(shown.size(), Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    shown.moveCenter(filling.rect().center());
    QBrush brush(filling.copy(shown));
    brush.setTransform(QTransform::fromScale(1 / ratio, 1 / ratio));
    painter.setBrush(brush);
    painter.drawRoundedRect(tile, m_radius, m_radius);
}

} // namespace pixpress
