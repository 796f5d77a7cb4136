// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "ui/colours.h"

#include <cmath>
#include <cstring>

using namespace pixpress;

namespace {

void check(const QString &text)
{
    const auto colour = colourFromHex(text);
    if (!colour)
        return;
    HOLDS(colour->isValid() && colour->alpha() == 255);
    const QString written = toHex(*colour);
    HOLDS(written.size() == 7 && written.startsWith(u'#'));
    HOLDS(colourFromHex(written) == colour);
    HOLDS(toHex(colour->redF(), colour->greenF(), colour->blueF()) == written);
}

} // namespace

// A typed colour: whatever is taken for one is written as six digits that read the same.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input = fuzz::bytesOf(data, size);
    check(QString::fromUtf8(input));
    // Also texts that UTF-8 has no form for.
    QString text(input.size() / 2, Qt::Uninitialized);
    std::memcpy(text.data(), data, static_cast<size_t>(text.size()) * 2);
    check(text);

    double component = 0;
    if (size >= sizeof component)
        std::memcpy(&component, data, sizeof component);
    if (std::abs(component) < 1e15) // Beyond, and for what is no number, the program ends.
        HOLDS(toHex(component, 0, 1).startsWith(u'#') && toHex(component, 0, 1).size() >= 7);
    return 0;
}
