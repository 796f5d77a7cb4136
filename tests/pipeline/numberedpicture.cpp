// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/numberedpicture.h"

#include "pipeline/folder.h"

#include <QtEndian>

namespace pixpress::test {

quint32 scatter(quint32 a, quint32 b, quint32 c)
{
    quint32 state = a * 2654435761U + b * 2246822519U + c * 3266489917U;
    state = (state ^ (state >> 15)) * 2246822519U;
    state = (state ^ (state >> 13)) * 3266489917U;
    return state ^ (state >> 16);
}

QByteArray NumberedPicture::bytes() const
{
    const quint32 dice = scatter(static_cast<quint32>(number), static_cast<quint32>(generation));
    const auto extra = static_cast<qsizetype>(dice % 4000);
    const qsizetype size = 200 + extra * (number % 100 == 50 ? 100 : 1);
    QByteArray result = test::bytes(size, static_cast<int>(dice & 0xffffff));
    qToLittleEndian(number, result.data());
    qToLittleEndian(generation, result.data() + sizeof number);
    return result;
}

NumberedPicture NumberedPicture::fromHead(const QByteArray &bytes)
{
    return {.number = qFromLittleEndian<int>(bytes.constData()),
            .generation = qFromLittleEndian<int>(bytes.constData() + sizeof(int))};
}

std::optional<NumberedPicture> NumberedPicture::fromWhole(const QByteArray &bytes)
{
    if (bytes.size() < headSize)
        return std::nullopt;
    const NumberedPicture picture = fromHead(bytes);
    return picture.bytes() == bytes ? std::optional(picture) : std::nullopt;
}

} // namespace pixpress::test
