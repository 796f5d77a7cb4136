// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pictures/codec.h"
#include "pictures/thumbnail.h"

namespace pixpress {

/// What the module answers.
struct CodecFunctions
{
    decltype(&pixpress::inspect) inspect;
    decltype(&pixpress::compress) compress;
    decltype(&pixpress::makeThumbnail) makeThumbnail;
};

/// The one function that the module exports, under this name.
using CodecEntry = const CodecFunctions *();
inline constexpr auto codecEntry = "pixpressCodec";

} // namespace pixpress
