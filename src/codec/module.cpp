// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/module.h"

extern "C" Q_DECL_EXPORT const pixpress::CodecFunctions *pixpressCodec()
{
    static constexpr pixpress::CodecFunctions functions{&pixpress::inspect, &pixpress::compress,
                                                        &pixpress::makeThumbnail};
    return &functions;
}
