// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "xdisplay.h"

#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>

namespace pixpress::test {

namespace {

/// A reply is ours to free, and is null when the request was in vain.
template <typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T *reply)
{
    return {reply, &std::free};
}

} // namespace

XDisplay::XDisplay(const QByteArray &name)
    : m_connection(xcb_connect(name.constData(), nullptr), &xcb_disconnect)
{
    if (xcb_connection_has_error(m_connection.get()))
        qFatal("There is no connection to the X server %s.", name.constData());
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
}

XDisplay::Window XDisplay::windowOf(qint64 processId) const
{
    for (const Window window : numbers(m_root, "_NET_CLIENT_LIST")) {
        if (numbers(window, "_NET_WM_PID").value(0) == processId)
            return window;
    }
    return 0;
}

XDisplay::Window XDisplay::activeWindow() const
{
    return numbers(m_root, "_NET_ACTIVE_WINDOW").value(0);
}

QByteArray XDisplay::title(Window window) const
{
    return property(window, "_NET_WM_NAME");
}

QSize XDisplay::minimumSize(Window window) const
{
    const QList<quint32> hints = numbers(window, "WM_NORMAL_HINTS");
    constexpr quint32 hasMinimum = 1 << 4;
    if (!(hints.value(0) & hasMinimum) || hints.size() < 7)
        return {};
    return {static_cast<int>(hints[5]), static_cast<int>(hints[6])};
}

QRect XDisplay::area(Window window) const
{
    auto *const x = m_connection.get();
    const auto size = owned(xcb_get_geometry_reply(x, xcb_get_geometry(x, window), nullptr));
    const auto place = owned(xcb_translate_coordinates_reply(
        x, xcb_translate_coordinates(x, window, m_root, 0, 0), nullptr));
    if (!size || !place)
        return {};
    return {place->dst_x, place->dst_y, size->width, size->height};
}

QByteArray XDisplay::className(Window window) const
{
    return property(window, "WM_CLASS").split('\0').value(1);
}

QImage XDisplay::icon(Window window) const
{
    const QList<quint32> sizeAndPoints = numbers(window, "_NET_WM_ICON");
    const auto width = sizeAndPoints.value(0);
    const auto height = sizeAndPoints.value(1);
    if (width == 0 || sizeAndPoints.size() < 2 + qsizetype(width) * height)
        return {};
    return QImage(reinterpret_cast<const uchar *>(sizeAndPoints.constData() + 2), int(width),
                  int(height), QImage::Format_ARGB32)
        .copy();
}

QImage XDisplay::picture(const QRect &area) const
{
    auto *const x = m_connection.get();
    const auto got = owned(xcb_get_image_reply(
        x,
        xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root, static_cast<qint16>(area.x()),
                      static_cast<qint16>(area.y()), static_cast<quint16>(area.width()),
                      static_cast<quint16>(area.height()), ~0U),
        nullptr));
    if (!got || xcb_get_image_data_length(got.get()) != area.width() * area.height() * 4)
        return {};
    return QImage(xcb_get_image_data(got.get()), area.width(), area.height(), QImage::Format_RGB32)
        .copy();
}

void XDisplay::close(Window window) const
{
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("_NET_CLOSE_WINDOW");
    xcb_send_event(m_connection.get(), 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
    xcb_flush(m_connection.get());
}

QByteArray XDisplay::property(Window window, const char *name) const
{
    auto *const x = m_connection.get();
    constexpr quint32 enough = 1024;
    const auto value = owned(xcb_get_property_reply(
        x, xcb_get_property(x, 0, window, atom(name), XCB_ATOM_ANY, 0, enough), nullptr));
    if (!value)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(value.get())),
            xcb_get_property_value_length(value.get())};
}

quint32 XDisplay::atom(const char *name) const
{
    auto *const x = m_connection.get();
    const QByteArray bytes(name);
    const auto known = owned(xcb_intern_atom_reply(
        x, xcb_intern_atom(x, 1, static_cast<quint16>(bytes.size()), bytes.constData()), nullptr));
    return known ? known->atom : 0;
}

QList<quint32> XDisplay::numbers(Window window, const char *name) const
{
    const QByteArray bytes = property(window, name);
    QList<quint32> numbers(bytes.size() / qsizetype(sizeof(quint32)));
    if (!numbers.isEmpty())
        std::memcpy(numbers.data(), bytes.constData(), size_t(numbers.size()) * sizeof(quint32));
    return numbers;
}

} // namespace pixpress::test
