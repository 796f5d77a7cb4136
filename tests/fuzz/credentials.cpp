// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "localservice/credentials.h"

using namespace pixpress;

// The Authorization header: nothing but the key opens.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input = fuzz::bytesOf(data, size);
    HOLDS(!isAuthorised(input, {}));
    // The input cannot hold what follows from all of it.
    HOLDS(!isAuthorised(input, QByteArray::number(fuzz::digestOf(input))));
    if (isAuthorised(input, "key"))
        HOLDS(QByteArray::fromBase64(input.mid(6)) == "api:key");

    const QByteArray shown = "Basic " + ("api:" + input).toBase64();
    HOLDS(isAuthorised(shown, input) == !input.isEmpty());
    HOLDS(!isAuthorised(shown, input + 'x'));
    HOLDS(!isAuthorised(shown.chopped(4), input));
    return 0;
}
