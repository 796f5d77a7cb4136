// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "worker/worker.h"

#include <QFuture>
#include <QImage>
#include <QObject>
#include <QPromise>
#include <QQmlEngine>
#include <QThreadPool>
#include <QUrl>

#include <memory>
#include <vector>

namespace pixpress {

/// Makes small pictures of image files in the worker: upright, the first frame, at most 72 pixels
/// on the longer side (twice the 36 logical ones that they are shown at), made from the full
/// picture and never from an embedded preview. The latest request comes first, since that is what a
/// person who scrolls is looking at. GUI thread only.
class Thumbnails : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has one.")

public:
    /// `worker` must outlive this object.
    explicit Thumbnails(Worker &worker);
    /// Cancels what has not been answered.
    ~Thumbnails() override;

    /// A null image if the file is missing, damaged, no regular file or absurdly large. Cancel the
    /// future when nobody looks any more: if the work has not begun, it is left out.
    QFuture<QImage> request(const QUrl &file);

private:
    struct Pending
    {
        QPromise<QImage> promise;
        QUrl file;
    };
    using PendingPointer = std::shared_ptr<Pending>;

    void startNext();
    void start(const PendingPointer &pending);
    void finish(const PendingPointer &pending, const QImage &image);

    Worker &m_worker;
    std::vector<PendingPointer> m_waiting;
    int m_running = 0;
    QThreadPool m_openers; ///< Opening a file may take its time, as on a network drive.
};

} // namespace pixpress
