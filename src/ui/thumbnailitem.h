// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ui/pixelitem.h"
#include "ui/thumbnails.h"

#include <QBasicTimer>
#include <QFutureWatcher>
#include <QPointer>

namespace pixpress {

/// Paints a tile with rounded corners, and the thumbnail of an image file over it once that is
/// there, filling the item, what sticks out cut off. Asks for it when the address has stayed for
/// three frames, and withdraws the request when the address changes or the item is deleted: while a
/// list is scrolled fast, no picture is read for a row that is gone with the next frame, and the
/// processors are left to the frames.
class ThumbnailItem : public pixpress::PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl url READ url WRITE setUrl NOTIFY urlChanged REQUIRED)
    Q_PROPERTY(pixpress::Thumbnails *thumbnails MEMBER m_thumbnails REQUIRED)
    Q_PROPERTY(qreal radius MEMBER m_radius) ///< Logical pixels, of the corners.
    Q_PROPERTY(QColor tileColor READ tileColor WRITE setTileColor NOTIFY tileColorChanged)
    Q_PROPERTY(QString pathExtension READ pathExtension NOTIFY urlChanged)
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)

public:
    explicit ThumbnailItem(QQuickItem *parent = nullptr);
    ~ThumbnailItem() override;

    QUrl url() const { return m_url; }
    void setUrl(const QUrl &url);
    QColor tileColor() const { return m_tileColor; }
    void setTileColor(const QColor &color);
    QString pathExtension() const; ///< As it is written, without the dot.
    bool isReady() const { return !m_image.isNull(); }

Q_SIGNALS:
    void urlChanged();
    void tileColorChanged();
    void readyChanged();

protected:
    void paint(QPainter &painter, QSizeF size, qreal ratio) override;
    void componentComplete() override;
    void timerEvent(QTimerEvent *event) override;

private:
    void load();
    void setImage(const QImage &image);

    QUrl m_url;
    QPointer<Thumbnails> m_thumbnails;
    qreal m_radius = 0;
    QColor m_tileColor = Qt::transparent;
    QImage m_image;
    QBasicTimer m_untilRequest;
    QFutureWatcher<QImage> m_watcher;
};

} // namespace pixpress
