// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstdio> // jpeglib.h needs it and does not say so.

#include <jpeglib.h>

#include <QByteArray>

namespace pixpress {

/// Where a JPEG that is written goes: memory that is freed with this object, whether the work ends
/// or is broken off. libjpeg's own memory destination, broken off, leaves its user a buffer that it
/// has freed already.
class JpegOutput
{
public:
    JpegOutput();
    JpegOutput(const JpegOutput &) = delete;
    JpegOutput &operator=(const JpegOutput &) = delete;
    ~JpegOutput();

    /// This object must outlive the use of `target`.
    void attachTo(jpeg_compress_struct &target) { target.dest = &m_manager.base; }

    /// What was written; complete once the compression has been finished.
    QByteArray bytes() const;

private:
    struct Manager
    {
        jpeg_destination_mgr base;
        unsigned char *bytes = nullptr;
        size_t capacity = 0;
    };

    static Manager &managerOf(j_compress_ptr target);
    static void grow(j_compress_ptr target, size_t capacity);
    static void onStart(j_compress_ptr target);
    static boolean onFull(j_compress_ptr target);
    static void onEnd(j_compress_ptr target);

    Manager m_manager{};
};

} // namespace pixpress
