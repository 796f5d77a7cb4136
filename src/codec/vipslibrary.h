// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <vips/vips8>

#include <atomic>

namespace pixpress {

/// Starts libvips, once, and takes away every loader but those of the four formats: a file that
/// only claims to be a picture must not reach a PDF or SVG interpreter. Safe from any thread.
void startVips();

/// Ends the evaluation of `image` and of all that is made from it soon after `stopped` is raised;
/// the evaluation then fails with a VError. `stopped` must outlive the image.
void stopWith(vips::VImage &image, const std::atomic_bool &stopped);

} // namespace pixpress
