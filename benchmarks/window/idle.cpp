// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "../support.h"
#include "program.h"
#include "window.h"

#include <QFileInfo>
#include <QThread>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace bench {

namespace {

constexpr auto settling = 3s;
constexpr auto watched = 5s;

void pause(std::chrono::seconds time)
{
    QThread::sleep(static_cast<unsigned long>(time.count()));
}

/// Prints two rows. The yardstick is one of each, so that the ratio is the figure itself.
void measure(const QString &name, const QStringList &files)
{
    const Desktop desktop;
    const Program program(desktop, sibling(u"pixpress-offline"_s), files);
    waitUntil(u"the window opens and the files are compressed"_s, [&] {
        return program.isPainted() && std::ranges::all_of(files, [](const QString &file) {
                   return QFileInfo::exists(QString(file).replace(u".png"_s, u"-pixpress.png"_s));
               });
    });
    pause(settling);
    const Program::Activity before = program.activity();
    pause(watched);
    const Program::Activity after = program.activity();
    if (before.wakeUps == 0 || after.wakeUps == 0)
        throw Failure(u"The system does not tell what the program's threads do."_s);

    print({name, static_cast<double>(after.wakeUps - before.wakeUps), 1, u"wake-ups"_s, 0});
    print({name + u"-processor"_s, after.processorMs - before.processorMs, 1, u"ms"_s, 0});
    if (after.wakeUps != before.wakeUps)
        note(u"%1: the threads went from %2 to %3"_s.arg(name, before.threads, after.threads));
}

} // namespace

void measureIdle()
{
    measure(u"idle"_s, {});
    const Workplace place(Medium::memory, 10'000'000);
    QStringList files;
    for (int number = 0; number < 3; ++number)
        files += makePicture(place.path(u"picture %1.png"_s.arg(number)));
    measure(u"idle-list"_s, files);
}

} // namespace bench
