// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "service/wire.h"

#include <algorithm>

using namespace pixpress;

// The count header: a number as Qt reads it, and 0 for what Qt would be more lenient with.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray header = fuzz::bytesOf(data, size);
    const bool isSigned = header.startsWith('+') || header.startsWith('-');
    const QByteArrayView digits = QByteArrayView(header).sliced(isSigned ? 1 : 0);
    const bool isNumber = !digits.isEmpty() && std::ranges::all_of(digits, [](char digit) {
        return digit >= '0' && digit <= '9';
    });
    HOLDS(parseCompressionCount(header) == (isNumber ? header.toLongLong() : 0));
    HOLDS(parseCompressionCount(std::nullopt) == 0);
    return 0;
}
