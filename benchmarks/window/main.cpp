// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The benchmarks of the window, as it is seen from outside. Without arguments all of them, else the
// named ones.

#include "window.h"

#include "../support.h"

#include <QCoreApplication>
#include <QImage>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace bench {

QString sibling(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

QString makePicture(const QString &path)
{
    QImage image(64, 64, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(4 * x, 4 * y, 128));
    }
    if (!image.save(path))
        throw Failure(path + u" cannot be written."_s);
    return path;
}

} // namespace bench

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList wanted = app.arguments().sliced(1);
    bool complete = true;
    const auto measure = [&](const QStringList &rows, const auto &benchmark) {
        if (!wanted.isEmpty() &&
            std::ranges::none_of(rows, [&](const QString &row) { return wanted.contains(row); }))
            return;
        try {
            benchmark();
        } catch (const bench::Failure &failure) {
            std::fprintf(stderr, "bench_window: %s\n", failure.what());
            complete = false;
        }
    };
    measure({u"window-start"_s, u"window-memory"_s}, bench::measureStart);
    measure({u"list-stall"_s, u"list-memory"_s, u"list-frame"_s}, bench::measureList);
    measure({u"idle"_s}, bench::measureIdle);
    return complete ? 0 : 1;
}
