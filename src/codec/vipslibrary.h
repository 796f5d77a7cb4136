// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <vips/vips8>

#include <atomic>

namespace pixpress {

/// Starts libvips, once, and takes away every loader but those of the four formats: a file that
/// only claims to be a picture must not reach a PDF or SVG interpreter. Safe from any thread.
///
/// What is read from a file is then read by one thread: with several, libvips 8.14 loses the error
/// of a decoder now and then (of some small WebP files every second time), and what is damaged
/// counts as black.
void startVips();

/// How many threads share work. Counted once: that reads files.
int coreCount();

/// Lets as many threads as there are cores work at what is made from these pixels, which are in
/// memory.
void useAllThreads(vips::VImage &pixels);

/// A copy of what libvips has written to memory, which is freed.
QByteArray taken(VipsBlob *blob);

/// Ends the evaluation of `image` and of all that is made from it soon after `stopped` is raised;
/// the evaluation then fails with a VError. `stopped` must outlive the image.
void stopWith(vips::VImage &image, const std::atomic_bool &stopped);

} // namespace pixpress
