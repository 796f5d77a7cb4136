// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace pixpress::ByteFormatter {

/// A byte count as people read it on this platform's file managers: powers of 1000, the largest
/// unit that keeps the number at 1 or above, no fraction for bytes and KB, at most one digit for
/// MB and two from GB on. 0 is written in words, a negative count with its sign. Always with a
/// point and in English, whatever the system's language.
QString format(qint64 bytes);

} // namespace pixpress::ByteFormatter
