// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

/// What the fuzz targets share. Each is a function that libFuzzer calls with one input after the
/// other, looking for those that reach code which no other has reached.
namespace pixpress::fuzz {

/// The input without a copy, so that reading a byte beyond its end is noticed.
inline QByteArray bytesOf(const uint8_t *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data),
                                   static_cast<qsizetype>(size));
}

/// A number that follows from the input alone, and changes with each of its bytes.
quint64 digestOf(const QByteArray &input);

/// Makes libFuzzer keep the inputs that lead to something new in a sense of ours. The libraries
/// that decode pictures are not compiled with its counters: it sees what comes out of them only by
/// this. `kind` is one of a few classes, `value` any number, of which the magnitude counts.
void noteOutcome(unsigned kind, quint64 value);

[[noreturn]] void fail(const char *claim, const char *file, int line);

} // namespace pixpress::fuzz

/// What must be true of every input; ends the process when it is not.
#define HOLDS(claim) ((claim) ? void() : pixpress::fuzz::fail(#claim, __FILE__, __LINE__))
