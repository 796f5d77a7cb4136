// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "../support.h"
#include "program.h"
#include "window.h"

using namespace Qt::StringLiterals;

namespace bench {

namespace {

constexpr int rounds = 9;
constexpr double allowedTime = 0.7;
constexpr double allowedMemory = 0.6;

/// A way to start a program.
class Subject
{
public:
    Subject(const QString &name, const QString &executable,
            const QList<std::pair<QString, QString>> &variables = {})
        : m_name(name), m_executable(executable), m_variables(variables)
    {
    }

    void start(const Desktop &desktop)
    {
        const Program program(desktop, m_executable, {}, m_variables);
        waitUntil(m_name + u" paints its window"_s, [&] { return program.isPainted(); });
        m_milliseconds.add(program.secondsSinceStart() * 1e3);
        m_megabytes.add(static_cast<double>(program.memoryFigure("VmHWM")) / 1e6);
    }
    void forget()
    {
        m_milliseconds = {};
        m_megabytes = {};
    }

    double milliseconds() const { return m_milliseconds.median(); }
    double megabytes() const { return m_megabytes.median(); }
    void tell() const
    {
        note(u"window-start: %1 %2 ms"_s.arg(m_name, m_milliseconds.range()));
        note(u"window-memory: %1 %2 MB"_s.arg(m_name, m_megabytes.range()));
    }

private:
    QString m_name;
    QString m_executable;
    QList<std::pair<QString, QString>> m_variables;
    Samples m_milliseconds;
    Samples m_megabytes;
};

} // namespace

void measureStart()
{
    const Desktop desktop;
    const QString pixpress = sibling(u"pixpress-offline"_s);
    Subject ours(u"pixpress-offline"_s, pixpress);
    Subject withOpenGL(u"pixpress-offline with OpenGL"_s, pixpress,
                       {{u"QT_QUICK_BACKEND"_s, u"rhi"_s},
                        {u"QSG_RHI_BACKEND"_s, u"opengl"_s},
                        {u"LIBGL_ALWAYS_SOFTWARE"_s, u"1"_s}});
    Subject yardstick(u"converseen"_s, u"converseen"_s);
    for (int round = 0; round <= rounds; ++round) {
        for (Subject *subject : {&ours, &yardstick, &withOpenGL}) {
            subject->start(desktop);
            if (round == 0)
                subject->forget(); // the caches are filled now
        }
    }

    print({u"window-start"_s, ours.milliseconds(), yardstick.milliseconds(), u"ms"_s, allowedTime});
    print({u"window-memory"_s, ours.megabytes(), yardstick.megabytes(), u"MB"_s, allowedMemory});
    print({u"window-start-opengl"_s, ours.milliseconds(), withOpenGL.milliseconds(), u"ms"_s, 1});
    print({u"window-memory-opengl"_s, ours.megabytes(), withOpenGL.megabytes(), u"MB"_s, 1});
    for (const Subject *subject : {&ours, &yardstick, &withOpenGL})
        subject->tell();
}

} // namespace bench
