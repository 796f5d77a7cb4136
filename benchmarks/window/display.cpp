// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "display.h"

#include "../support.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

/// A reply is ours to free, and is null when the request was in vain.
template <typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T *reply)
{
    return {reply, &std::free};
}

} // namespace

Display::Display(const QByteArray &name)
    : m_connection(xcb_connect(name.constData(), nullptr), &xcb_disconnect)
{
    if (xcb_connection_has_error(m_connection.get()))
        throw Failure(u"There is no connection to the X server "_s + QString::fromLatin1(name));
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
}

bool Display::showsWindowOf(qint64 processId) const
{
    return std::ranges::any_of(numbers(m_root, "_NET_CLIENT_LIST"), [&](Window window) {
        return numbers(window, "_NET_WM_PID").value(0) == processId && isPainted(window);
    });
}

bool Display::isPainted(Window window) const
{
    auto *const x = m_connection.get();
    const auto attributes =
        owned(xcb_get_window_attributes_reply(x, xcb_get_window_attributes(x, window), nullptr));
    const auto size = owned(xcb_get_geometry_reply(x, xcb_get_geometry(x, window), nullptr));
    if (!attributes || !size || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
        return false;
    const auto image = owned(xcb_get_image_reply(
        x,
        xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, size->width, size->height, ~0U),
        nullptr));
    if (!image)
        return false; // it reaches beyond the screen, or is gone
    const std::span points(reinterpret_cast<const quint32 *>(xcb_get_image_data(image.get())),
                           static_cast<size_t>(xcb_get_image_data_length(image.get())) / 4);
    constexpr quint32 colour = 0xFFFFFF;
    return std::ranges::any_of(
        points, [first = points[0] & colour](quint32 point) { return (point & colour) != first; });
}

QList<quint32> Display::numbers(Window window, const char *property) const
{
    auto *const x = m_connection.get();
    const auto length = static_cast<quint16>(std::strlen(property));
    const auto atom =
        owned(xcb_intern_atom_reply(x, xcb_intern_atom(x, 1, length, property), nullptr));
    if (!atom)
        return {};
    constexpr quint32 enough = 64;
    const auto value = owned(xcb_get_property_reply(
        x, xcb_get_property(x, 0, window, atom->atom, XCB_ATOM_ANY, 0, enough), nullptr));
    if (!value)
        return {};
    QList<quint32> numbers(xcb_get_property_value_length(value.get()) / qsizetype(sizeof(quint32)));
    std::memcpy(numbers.data(), xcb_get_property_value(value.get()),
                static_cast<size_t>(numbers.size()) * sizeof(quint32));
    return numbers;
}

} // namespace bench
