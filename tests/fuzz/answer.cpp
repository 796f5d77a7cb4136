// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"
#include "worker/messages.h"

using namespace pixpress;

// A packet from a worker that is not to be trusted, and its memory: either is refused, or the
// answer is what it says of itself. The first byte is the length of the packet.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input = fuzz::bytesOf(data, size);
    const qsizetype length =
        input.isEmpty() ? 0 : std::min<qsizetype>(quint8(input.front()), input.size() - 1);
    Packet packet{input.mid(1, length), FileDescriptor()};
    if (const QByteArrayView bytes =
            QByteArrayView(input).sliced(std::min(1 + length, input.size()));
        !bytes.isEmpty())
        packet.descriptor = *sealedMemory(bytes);

    (void)Greeting::parse(packet);
    if (const auto answer = Answer::parse(packet)) {
        HOLDS(answer->id > 0);
        if (const auto *thumbnail = std::get_if<Thumbnail>(&answer->result))
            HOLDS(thumbnail->width > 0 && thumbnail->height > 0 &&
                  thumbnail->rgba.size() == 4 * thumbnail->width * thumbnail->height);
        if (const auto *compressed = std::get_if<Compressed>(&answer->result))
            HOLDS(!compressed->bytes.isEmpty() && compressed->width > 0 && compressed->height > 0);
        if (const auto *failed = std::get_if<Failed>(&answer->result))
            HOLDS(!failed->reason.isEmpty());
    }
    if (const auto request = Request::parse(std::move(packet)))
        HOLDS(request->id > 0 && request->picture.isOpen());
    return 0;
}
