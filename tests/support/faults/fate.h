// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/faults/faults.h"

/// What the armed fault makes of a call. For the definitions of the calls only.
namespace pixpress::test::faults {

/// How much of its work a call is to do.
enum class Fate {
    whole,
    half,
    none, ///< It is to fail.
    last, ///< Half, and then the process ends.
};

Fate fateOf(Call call, int descriptor);
Fate fateOf(Call call, const char *path);

void tellOfOpening(const char *path);
Abilities abilities();

/// For record(), after the call: which file it was is found by the descriptor.
void note(int descriptor, Step step);
void note(const char *path, Step step);

/// Sets errno; returns what failing calls return.
int fail();
int error(); ///< For calls that return it.

/// Kills the process when that was to be its last call.
void endIfLast(Fate fate);

} // namespace pixpress::test::faults
