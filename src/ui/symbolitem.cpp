// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/symbolitem.h"

#include <QCache>
#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

#include <memory>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// Parsed once a symbol. Used while an item is painted: by one thread at a time, but not always
/// the same one, when there are several windows.
QSvgRenderer &drawing(const QString &name)
{
    thread_local QHash<QString, std::shared_ptr<QSvgRenderer>> drawings;
    auto &drawing = drawings[name];
    if (!drawing) {
        drawing = std::make_shared<QSvgRenderer>(u":/qt/qml/Pixpress/symbols/%1.svg"_s.arg(name));
        if (!drawing->isValid())
            qWarning("There is no symbol \"%s\".", qUtf8Printable(name));
    }
    return *drawing;
}

/// The drawing is black on nothing; its coverage is what is kept of it. The same few symbols stand
/// in every row of a list.
QImage tinted(const QString &name, QSize pixels, QColor colour)
{
    thread_local QCache<QString, QImage> images(200);
    const QString key =
        u"%1 %2x%3 %4"_s.arg(name).arg(pixels.width()).arg(pixels.height()).arg(colour.rgba());
    if (const QImage *known = images.object(key))
        return *known;
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing(name).render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), colour);
    painter.end();
    images.insert(key, new QImage(image));
    return image;
}

} // namespace

SymbolItem::SymbolItem(QQuickItem *parent) : PixelItem(parent)
{
    setSize(16);
}

void SymbolItem::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    update();
    Q_EMIT nameChanged();
}

void SymbolItem::setColor(const QColor &color)
{
    if (m_color == color)
        return;
    m_color = color;
    update();
    Q_EMIT colorChanged();
}

void SymbolItem::setSize(qreal size)
{
    if (qFuzzyCompare(implicitWidth(), size))
        return;
    setImplicitSize(size, size);
    Q_EMIT sizeChanged();
}

void SymbolItem::paint(QPainter &painter, QSizeF size, qreal ratio)
{
    if (!m_name.isEmpty())
        painter.drawImage(QRectF({}, size), tinted(m_name, (size * ratio).toSize(), m_color));
}

} // namespace pixpress
