// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "worker/messages.h"

#include <atomic>

namespace pixpress {

/// Answers the requests that arrive on a channel, each on a thread of its own.
class Server
{
public:
    /// Together, the pictures being compressed have at most `maxPixels` pixels, or it is one.
    Server(int socket, qint64 maxPixels) : m_socket(socket), m_maxPixels(maxPixels) {}

    /// Returns at the end of the connection, or when what arrives is no request. Requests may still
    /// be under way on their threads.
    void run();

private:
    void answer(const Request &request);
    decltype(Answer::result) compress(const FileDescriptor &picture,
                                      const CompressionOptions &options);
    decltype(Answer::result) makeThumbnail(const FileDescriptor &picture, int longerSide) const;

    const int m_socket;
    const qint64 m_maxPixels;
    std::atomic<qint64> m_pixels = 0; ///< Of the pictures being compressed.
};

} // namespace pixpress
