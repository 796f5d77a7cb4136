// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/formats.h"

using namespace Qt::StringLiterals;

namespace pixpress {

QString rawValue(ImageFormat format)
{
    switch (format) {
    case ImageFormat::png: return u"image/png"_s;
    case ImageFormat::jpeg: return u"image/jpeg"_s;
    case ImageFormat::webp: return u"image/webp"_s;
    case ImageFormat::avif: return u"image/avif"_s;
    }
    Q_UNREACHABLE();
}

QString rawValue(ResizeMode mode)
{
    switch (mode) {
    case ResizeMode::scale: return u"scale"_s;
    case ResizeMode::fit: return u"fit"_s;
    case ResizeMode::cover: return u"cover"_s;
    case ResizeMode::thumb: return u"thumb"_s;
    }
    Q_UNREACHABLE();
}

QString rawValue(OutputDestination destination)
{
    switch (destination) {
    case OutputDestination::alongside: return u"alongside"_s;
    case OutputDestination::overwrite: return u"overwrite"_s;
    case OutputDestination::customFolder: return u"customFolder"_s;
    }
    Q_UNREACHABLE();
}

QString displayName(ImageFormat format)
{
    switch (format) {
    case ImageFormat::png: return u"PNG"_s;
    case ImageFormat::jpeg: return u"JPEG"_s;
    case ImageFormat::webp: return u"WebP"_s;
    case ImageFormat::avif: return u"AVIF"_s;
    }
    Q_UNREACHABLE();
}

QString displayName(ResizeMode mode)
{
    switch (mode) {
    case ResizeMode::scale: return u"Scale"_s;
    case ResizeMode::fit: return u"Fit"_s;
    case ResizeMode::cover: return u"Cover"_s;
    case ResizeMode::thumb: return u"Thumb"_s;
    }
    Q_UNREACHABLE();
}

QString description(ResizeMode mode)
{
    switch (mode) {
    case ResizeMode::scale:
        return u"Scales the image proportionally. Provide either a target width or height, not "
               "both."_s;
    case ResizeMode::fit:
        return u"Scales the image proportionally to fit within the given dimensions."_s;
    case ResizeMode::cover:
        return u"Scales and crops the image to cover the given dimensions exactly."_s;
    case ResizeMode::thumb: return u"Intelligently crops to focus on the most interesting area."_s;
    }
    Q_UNREACHABLE();
}

QString title(OutputDestination destination)
{
    switch (destination) {
    case OutputDestination::alongside: return u"Save Alongside Original"_s;
    case OutputDestination::overwrite: return u"Overwrite Original"_s;
    case OutputDestination::customFolder: return u"Save to Folder"_s;
    }
    Q_UNREACHABLE();
}

QString description(OutputDestination destination)
{
    switch (destination) {
    case OutputDestination::alongside:
        return u"Saves a copy with a \"-pixpress\" suffix next to the original"_s;
    case OutputDestination::overwrite:
        return u"Replaces the original file with the compressed version"_s;
    case OutputDestination::customFolder:
        return u"Saves all compressed images to a chosen folder"_s;
    }
    Q_UNREACHABLE();
}

QString fileExtension(ImageFormat format)
{
    switch (format) {
    case ImageFormat::png: return u"png"_s;
    case ImageFormat::jpeg: return u"jpg"_s;
    case ImageFormat::webp: return u"webp"_s;
    case ImageFormat::avif: return u"avif"_s;
    }
    Q_UNREACHABLE();
}

const QSet<QString> &supportedExtensions()
{
    static const QSet<QString> extensions{u"png"_s, u"jpg"_s, u"jpeg"_s, u"webp"_s, u"avif"_s};
    return extensions;
}

QString pathExtension(const QString &fileName)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    return dot > 0 ? fileName.mid(dot + 1) : QString();
}

bool isSupported(const QString &fileName)
{
    return supportedExtensions().contains(pathExtension(fileName).toLower());
}

} // namespace pixpress
