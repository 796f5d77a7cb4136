// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFuture>
#include <QImage>
#include <QObject>
#include <QQmlEngine>
#include <QThreadPool>
#include <QUrl>

#include <atomic>

namespace pixpress {

/// A small picture of an image file: upright, the first frame, at most 72 pixels on its longer side
/// (twice the 36 logical ones it is shown at), made from the full picture and never from an
/// embedded preview. A null image when the file is missing, damaged, no regular file or absurdly
/// large. Runs on any thread, which it blocks; ends early, with a null image, soon after `stopped`
/// is raised.
QImage generateThumbnail(const QUrl &file, const std::atomic_bool &stopped);

/// Makes thumbnails in the background, with a core left to the window. What was asked for last
/// comes first: that is what a person who scrolls is looking at. GUI thread only.
class Thumbnails : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has one.")

public:
    Thumbnails();
    /// Waits for the pictures being decoded, whose decoding is cut short.
    ~Thumbnails() override;

    /// Loads in the background what the first picture needs, if that has not been done.
    void prepare();

    /// As generateThumbnail(). Cancel the future when nobody looks any more: work that has not
    /// begun is then left out.
    QFuture<QImage> request(const QUrl &file);

private:
    std::atomic_bool m_stopped = false;
    bool m_isPrepared = false;
    int m_requests = 0; ///< Rises, and with it the priority.
    QThreadPool m_pool;
};

} // namespace pixpress
