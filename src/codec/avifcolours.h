// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

namespace pixpress {

/// Whether libheif has found an AV1 decoder or encoder. On some systems they are plugins in
/// packages of their own.
bool canDecodeAvif();
bool canEncodeAvif();

/// Why the pixels of this AVIF would come out wrong, as a sentence: they are HDR, or transparent in
/// a way that the installed libheif does not see. Empty for all others, and for what is no AVIF.
QString unreadableAvifReason(const QByteArray &file);

/// The ICC profile of an AVIF that names its colours by number (CICP) only, which libvips ignores.
/// Empty when they are sRGB or unknown, or the file has a profile.
QByteArray profileOfNamedColours(const QByteArray &file);

} // namespace pixpress
