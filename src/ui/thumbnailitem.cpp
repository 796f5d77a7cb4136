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

ThumbnailItem::ThumbnailItem(QQuickItem *parent) : QQuickPaintedItem(parent)
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
    QQuickPaintedItem::componentComplete();
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
        return QQuickPaintedItem::timerEvent(event);
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

void ThumbnailItem::paint(QPainter *painter)
{
    painter->setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter->setPen(Qt::NoPen);
    painter->setBrush(m_tileColor);
    painter->drawRoundedRect(boundingRect(), m_radius, m_radius);
    if (m_image.isNull())
        return;
    const QSizeF filled = QSizeF(m_image.size()).scaled(size(), Qt::KeepAspectRatioByExpanding);
    QBrush brush(m_image);
    brush.setTransform(
        QTransform::fromTranslate((width() - filled.width()) / 2, (height() - filled.height()) / 2)
            .scale(filled.width() / m_image.width(), filled.height() / m_image.height()));
    painter->setBrush(brush);
    painter->drawRoundedRect(boundingRect(), m_radius, m_radius);
}

} // namespace pixpress
