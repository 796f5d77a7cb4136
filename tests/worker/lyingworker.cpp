// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "worker/messages.h"

#include <QCborArray>
#include <QCborMap>

#include <map>
#include <string>

#include <sys/mman.h>
#include <sys/socket.h>

using namespace pixpress;
using namespace Qt::StringLiterals;

namespace {

void send(const QByteArray &bytes, int descriptor = -1)
{
    (void)sendPacket(STDIN_FILENO, bytes, descriptor);
}

QCborMap thumbnail(quint64 id, const QCborValue &width, const QCborValue &height)
{
    return {{u"id"_s, static_cast<qint64>(id)},
            {u"kind"_s, u"thumbnail"_s},
            {u"width"_s, width},
            {u"height"_s, height}};
}

QByteArray cbor(const QCborMap &map)
{
    return map.toCborValue().toCbor();
}

int memory(qint64 size, int seals)
{
    const int descriptor = ::memfd_create("lie", MFD_ALLOW_SEALING);
    (void)::ftruncate(descriptor, size);
    ::fcntl(descriptor, F_ADD_SEALS, seals);
    return descriptor;
}

constexpr int sealed = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

/// Each is given the number of a request for a thumbnail, and answers it as no worker would.
const std::map<std::string, void (*)(quint64)> lies{
    {"garbage", [](quint64) { send("\xff\xff\xff\xff"); }},
    {"list", [](quint64) { send(QCborArray{1, 2}.toCborValue().toCbor()); }},
    {"deep nesting", [](quint64) { send(QByteArray(5000, '\x81')); }},
    {"huge length", [](quint64) { send(QByteArray::fromHex("5bffffffffffffff00")); }},
    {"too large a packet", [](quint64) { send(QByteArray(100'000, 'x')); }},
    {"no number",
     [](quint64 id) {
         auto map = thumbnail(id, 2, 2);
         map.remove(u"id"_s);
         send(cbor(map), memory(16, sealed));
     }},
    {"another number", [](quint64 id) { send(cbor(thumbnail(id + 9, 2, 2)), memory(16, sealed)); }},
    {"unknown kind",
     [](quint64 id) { send(cbor({{u"id"_s, static_cast<qint64>(id)}, {u"kind"_s, u"gift"_s}})); }},
    {"another request's kind",
     [](quint64 id) {
         send(cbor({{u"id"_s, static_cast<qint64>(id)},
                    {u"kind"_s, u"compressed"_s},
                    {u"inputType"_s, u"image/png"_s},
                    {u"outputType"_s, u"image/png"_s},
                    {u"width"_s, 2},
                    {u"height"_s, 2}}),
              memory(16, sealed));
     }},
    {"busy with nothing",
     [](quint64 id) { send(cbor({{u"id"_s, static_cast<qint64>(id)}, {u"kind"_s, u"busy"_s}})); }},
    {"no descriptor", [](quint64 id) { send(cbor(thumbnail(id, 2, 2))); }},
    {"unsealed", [](quint64 id) { send(cbor(thumbnail(id, 2, 2)), memory(16, 0)); }},
    {"can shrink",
     [](quint64 id) { send(cbor(thumbnail(id, 2, 2)), memory(16, F_SEAL_GROW | F_SEAL_WRITE)); }},
    {"too short", [](quint64 id) { send(cbor(thumbnail(id, 2, 2)), memory(15, sealed)); }},
    {"too long", [](quint64 id) { send(cbor(thumbnail(id, 2, 2)), memory(17, sealed)); }},
    {"no bytes", [](quint64 id) { send(cbor(thumbnail(id, 2, 2)), memory(0, sealed)); }},
    {"a terabyte", [](quint64 id) { send(cbor(thumbnail(id, 2, 2)), memory(1LL << 40, sealed)); }},
    {"no size", [](quint64 id) { send(cbor(thumbnail(id, 0, 2)), memory(0, sealed)); }},
    {"negative size", [](quint64 id) { send(cbor(thumbnail(id, -2, -2)), memory(16, sealed)); }},
    {"overflowing size",
     [](quint64 id) { send(cbor(thumbnail(id, 1LL << 62, 1LL << 62)), memory(0, sealed)); }},
    {"fractional size", [](quint64 id) { send(cbor(thumbnail(id, 2.5, 2)), memory(16, sealed)); }},
    {"its own socket", [](quint64 id) { send(cbor(thumbnail(id, 2, 2)), STDIN_FILENO); }},
    {"a pipe",
     [](quint64 id) {
         int ends[2] = {};
         (void)::pipe(ends);
         send(cbor(thumbnail(id, 2, 2)), ends[0]);
     }},
    {"the picture itself", nullptr}, // the descriptor that came
    {"two answers",
     [](quint64 id) {
         send(cbor(thumbnail(id, 2, 2)), memory(16, sealed));
         send(cbor(thumbnail(id, 2, 2)), memory(16, sealed));
     }},
    {"a flood",
     [](quint64 id) {
         while (sendPacket(STDIN_FILENO, cbor(thumbnail(id + 1, 2, 2)), -1)) {
         }
     }},
    {"silence", [](quint64) {}},
    {"death", [](quint64) { ::_exit(1); }},
};

/// Sends pictures back as they came; but the first waits for the second, which is sent away once.
void beBusyOnce()
{
    const auto echo = [](const Request &request) {
        const QByteArray bytes = readSealed(request.picture.get(), 100).value();
        (void)Answer{request.id, Compressed{bytes, ImageFormat::png, ImageFormat::png, 1, 1}}.send(
            STDIN_FILENO);
    };
    const auto next = [] { return Request::parse(receivePacket(STDIN_FILENO).value()); };
    const auto first = next();
    const auto second = next();
    if (!first || !second)
        return;
    (void)Answer{second->id, Busy()}.send(STDIN_FILENO);
    echo(*first);
    while (const auto request = next())
        echo(*request);
}

} // namespace

/// Says that it is ready, unless that is the lie, and answers every request with the lie that is
/// named in the environment.
int main()
{
    const std::string name = ::getenv("PIXPRESS_LIE");
    if (name == "no greeting")
        send("\xff");
    else if (name == "death at the start")
        return 1;
    else
        (void)Greeting().send(STDIN_FILENO);
    if (name == "busy while another is under way")
        beBusyOnce();
    while (auto packet = receivePacket(STDIN_FILENO)) {
        const auto request = Request::parse(*std::move(packet));
        if (!request)
            return 0;
        if (name == "the picture itself")
            send(cbor(thumbnail(request->id, 2, 2)), request->picture.get());
        else if (lies.contains(name))
            lies.at(name)(request->id);
    }
}
