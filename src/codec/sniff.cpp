// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/sniff.h"

#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

constexpr qsizetype pngSignatureSize = 8;

quint32 bigEndianAt(const QByteArray &bytes, qsizetype offset)
{
    return qFromBigEndian<quint32>(bytes.constData() + offset);
}

/// Whether an animation control chunk stands before the picture data; after it, it has no effect.
bool isAnimatedPng(const QByteArray &bytes)
{
    qsizetype offset = pngSignatureSize;
    while (offset + 8 <= bytes.size()) {
        const QByteArrayView type = QByteArrayView(bytes).sliced(offset + 4, 4);
        if (type == "acTL")
            return true;
        if (type == "IDAT")
            return false;
        offset += 12 + static_cast<qsizetype>(bigEndianAt(bytes, offset));
    }
    return false;
}

bool isAnimatedWebp(const QByteArray &bytes)
{
    constexpr char animationFlag = 0x02;
    return bytes.size() > 20 && QByteArrayView(bytes).sliced(12, 4) == "VP8X" &&
           (bytes.at(20) & animationFlag) != 0;
}

/// The brands of an ISO media file say what a reader must be able to do: "avif" a still picture,
/// "avis" a sequence. HEIC has the same container with other brands.
std::optional<Sniffed> sniffMedia(const QByteArray &bytes)
{
    if (bytes.size() < 16 || QByteArrayView(bytes).sliced(4, 4) != "ftyp")
        return std::nullopt;
    const qsizetype boxEnd =
        std::min<qsizetype>(static_cast<qsizetype>(bigEndianAt(bytes, 0)), bytes.size());
    bool isStill = false;
    bool isSequence = false;
    for (qsizetype offset = 8; offset + 4 <= boxEnd; offset += 4) {
        if (offset == 12)
            continue; // The minor version stands between the major and the compatible brands.
        const QByteArrayView brand = QByteArrayView(bytes).sliced(offset, 4);
        isStill |= brand == "avif";
        isSequence |= brand == "avis";
    }
    if (!isStill && !isSequence)
        return std::nullopt;
    return Sniffed{ImageFormat::avif, isSequence};
}

} // namespace

std::optional<Sniffed> sniff(const QByteArray &bytes)
{
    if (bytes.startsWith(QByteArrayView("\x89PNG\r\n\x1a\n", pngSignatureSize)))
        return Sniffed{ImageFormat::png, isAnimatedPng(bytes)};
    if (bytes.startsWith("\xff\xd8\xff"))
        return Sniffed{ImageFormat::jpeg, false};
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return Sniffed{ImageFormat::webp, isAnimatedWebp(bytes)};
    return sniffMedia(bytes);
}

QString unreadableJpegReason(const QByteArray &bytes)
{
    qsizetype at = 2;
    while (at + 4 < bytes.size() && bytes.at(at) == '\xff') {
        const auto marker = static_cast<quint8>(bytes.at(at + 1));
        if (marker == 0xff) { // It may be repeated.
            ++at;
            continue;
        }
        const bool isFrame =
            marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
        if (!isFrame) {
            at += 2 + qFromBigEndian<quint16>(bytes.constData() + at + 2);
            continue;
        }
        const bool isLossless = marker % 4 == 3;
        if (isLossless)
            return u"Lossless JPEG images are not supported."_s;
        const int bits = static_cast<quint8>(bytes.at(at + 4));
        if (bits != 8)
            return u"JPEG images with %1 bits per sample are not supported."_s.arg(bits);
        if (marker > 0xc4 && marker < 0xc8)
            return u"Hierarchical JPEG images are not supported."_s;
        break;
    }
    return {};
}

std::optional<PixelSize> statedPngSize(const QByteArray &bytes)
{
    if (bytes.size() < 24 || QByteArrayView(bytes).sliced(12, 4) != "IHDR")
        return std::nullopt;
    return PixelSize{bigEndianAt(bytes, 16), bigEndianAt(bytes, 20)};
}

} // namespace pixpress
