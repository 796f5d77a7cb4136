// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vips/vips8>

namespace pixpress {

/// What is in an open regular file, which stays open. Throws vips::VError when it has no size.
///
/// Not vips::VSource::new_from_descriptor(), which maps files into memory: a process ends that
/// looks at a part of them that is there no more, as when a picture is overwritten by a smaller
/// one. Nor does libheif bear it that less is read than the size has promised: the size stays, and
/// what is missing or cannot be read is zeros.
vips::VSource descriptorSource(int descriptor);

} // namespace pixpress
