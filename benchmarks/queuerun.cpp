// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "queuerun.h"

#include "support.h"

#include <QElapsedTimer>
#include <QEventLoop>

using namespace Qt::StringLiterals;
using pixpress::CompressionQueue;

namespace bench {

pixpress::CompressionOptions alongside()
{
    return {.outputDestination = pixpress::OutputDestination::alongside};
}

QString outputPath(const QUrl &source)
{
    const QString path = source.toLocalFile();
    const qsizetype dot = path.lastIndexOf(u'.');
    return path.first(dot) + u"-pixpress"_s + path.sliced(dot);
}

double runQueue(const QUrl &service, const QList<QUrl> &files,
                const std::function<void(const pixpress::CompressionTask &)> &completed)
{
    pixpress::TransientSettings settings;
    pixpress::KeychainHelper::saveAPIKey(settings, u"key"_s);
    CompressionQueue queue(settings, {.baseURL = service, .limits = {}});

    QEventLoop loop;
    QElapsedTimer timer;
    double seconds = 0;
    QString error;
    QObject::connect(&queue, &CompressionQueue::taskChanged, &loop, [&](qsizetype index) {
        const pixpress::CompressionTask &task = queue.tasks()[index];
        if (const auto *failed = std::get_if<pixpress::status::Failed>(&task.status)) {
            error = failed->error;
            loop.quit();
        } else if (completed && std::holds_alternative<pixpress::status::Completed>(task.status)) {
            completed(task);
        }
    });
    QObject::connect(&queue, &CompressionQueue::completedCountChanged, &loop, [&] {
        if (queue.completedCount() < files.size())
            return;
        seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
        loop.quit();
    });

    timer.start();
    queue.addFiles(files, alongside());
    loop.exec();
    if (!error.isEmpty())
        throw Failure(u"A task failed: "_s + error);
    return seconds;
}

} // namespace bench
