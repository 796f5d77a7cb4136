// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <optional>

namespace pixpress::test {

/// What stands for a picture where it only matters which one it is and whether it is whole: its
/// number, its generation (0 for a source, n for the output of the nth upload), and bytes that
/// follow from these.
struct NumberedPicture
{
    int number = 0;
    int generation = 0;

    bool operator==(const NumberedPicture &) const = default;

    /// Some kilobytes, of every hundredth picture some hundred.
    QByteArray bytes() const;

    static constexpr qsizetype headSize = 8;

    /// Of at least headSize bytes, which need not be whole.
    static NumberedPicture fromHead(const QByteArray &bytes);
    /// None when a byte is wrong, missing or too many.
    static std::optional<NumberedPicture> fromWhole(const QByteArray &bytes);
};

/// The same for the same arguments, and evenly spread.
quint32 scatter(quint32 a, quint32 b, quint32 c = 0);

} // namespace pixpress::test
