// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/descriptorsource.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace pixpress {

namespace {

struct File
{
    int descriptor;
    gint64 size;
    std::atomic<gint64> position = 0; ///< libvips hands the source from thread to thread.
};

void destroyFile(void *file)
{
    delete static_cast<File *>(file);
}

// C callbacks of the source's signals.
gint64 onRead(VipsSourceCustom *, void *buffer, gint64 size, void *data)
{
    auto *file = static_cast<File *>(data);
    const gint64 position = file->position;
    const auto wanted = static_cast<size_t>(std::clamp(file->size - position, gint64(0), size));
    ssize_t got = -1;
    do {
        got = pread(file->descriptor, buffer, wanted, position);
    } while (got == -1 && errno == EINTR);
    if (got <= 0) {
        std::memset(buffer, 0, wanted);
        got = static_cast<ssize_t>(wanted);
    }
    file->position += got;
    return got;
}

gint64 onSeek(VipsSourceCustom *, gint64 offset, int whence, void *data)
{
    auto *file = static_cast<File *>(data);
    const gint64 position = file->position;
    const gint64 from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position : file->size;
    if (offset < -from)
        return -1;
    return file->position = from + offset;
}

} // namespace

vips::VSource descriptorSource(int descriptor)
{
    const off_t size = lseek(descriptor, 0, SEEK_END); // not fstat(): a sandbox may refuse that
    if (size < 0)
        throw vips::VError("not a file");
    VipsSourceCustom *source = vips_source_custom_new();
    auto *file = new File{descriptor, size};
    g_object_set_data_full(G_OBJECT(source), "pixpress-file", file, destroyFile);
    g_signal_connect(source, "read", G_CALLBACK(onRead), file);
    g_signal_connect(source, "seek", G_CALLBACK(onSeek), file);
    return vips::VSource(VIPS_SOURCE(source), vips::STEAL);
}

} // namespace pixpress
