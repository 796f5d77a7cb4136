// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QtEndian>

#include <zlib.h>

#include <cstring>

extern "C" size_t LLVMFuzzerMutate(uint8_t *data, size_t size, size_t maxSize);

namespace {

/// Gives every chunk of a PNG the checksum of its content.
void correctSums(uint8_t *data, size_t size)
{
    constexpr size_t signatureSize = 8;
    if (size < signatureSize || std::memcmp(data, "\x89PNG", 4) != 0)
        return;
    for (size_t at = signatureSize; at + 12 <= size;) {
        const size_t length = qFromBigEndian<quint32>(data + at);
        if (length > size - at - 12)
            return;
        const uLong sum = crc32(0, data + at + 4, static_cast<uInt>(length + 4));
        qToBigEndian(static_cast<quint32>(sum), data + at + 8 + length);
        at += 12 + length;
    }
}

} // namespace

// Nearly every change would else be found out by a checksum, and none get any further.
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize,
                                          unsigned seed);
extern "C" size_t LLVMFuzzerCustomMutator(uint8_t *data, size_t size, size_t maxSize, unsigned seed)
{
    constexpr unsigned leftWrong = 16; // One in so many.
    const size_t changed = LLVMFuzzerMutate(data, size, maxSize);
    if (seed % leftWrong != 0)
        correctSums(data, changed);
    return changed;
}
