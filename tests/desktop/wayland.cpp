// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "wayland.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

// Of an output of 1024 x 768; the smaller window leaves most of the larger one free.
const QByteArray configuration = R"(
xwayland disable
swaybg_command -
default_border none
default_floating_border none
for_window [app_id="pixpress.*"] floating enable, move position 0 0
for_window [app_id="dragsource"] floating enable, move position 820 560
)";

QJsonObject nodeOf(qint64 processId, const QJsonObject &node)
{
    if (node.value(u"pid"_s).toInteger() == processId)
        return node;
    for (const QString &children : {u"nodes"_s, u"floating_nodes"_s}) {
        for (const QJsonValue child : node.value(children).toArray()) {
            if (const QJsonObject found = nodeOf(processId, child.toObject()); !found.isEmpty())
                return found;
        }
    }
    return {};
}

QRect rectOf(const QJsonObject &object)
{
    const auto number = [&object](const QString &name) { return object.value(name).toInt(); };
    return {number(u"x"_s), number(u"y"_s), number(u"width"_s), number(u"height"_s)};
}

} // namespace

Wayland::Wayland(const Desktop &desktop) : m_desktop(desktop)
{
    bindToThisProcess(m_process);
}

Wayland::~Wayland()
{
    m_process.terminate();
    if (!m_process.waitForFinished()) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

bool Wayland::start()
{
    // It refuses to be root, as one is in a container: so it becomes nobody, who may still write
    // into the home.
    QStringList command{u"sway"_s, u"--config"_s, m_desktop.configure(u"sway"_s, configuration)};
    if (geteuid() == 0)
        command = QStringList{u"setpriv"_s,
                              u"--reuid=nobody"_s,
                              u"--regid=nogroup"_s,
                              u"--clear-groups"_s,
                              u"--inh-caps=-all,+dac_override"_s,
                              u"--ambient-caps=-all,+dac_override"_s} +
                  command;
    QProcessEnvironment environment = m_desktop.environment();
    environment.insert(u"WLR_BACKENDS"_s, u"x11"_s);
    environment.insert(u"WLR_RENDERER"_s, u"pixman"_s);
    environment.insert(u"SWAYSOCK"_s, environment.value(u"XDG_RUNTIME_DIR"_s) + u"/sway.sock"_s);
    m_process.setProcessEnvironment(environment);
    m_process.start(command.takeFirst(), command);
    return QTest::qWaitFor(
        [this] {
            m_window = m_desktop.display().activeWindow();
            return m_window != 0 && !tree().isEmpty();
        },
        patience);
}

Invocation Wayland::with(Invocation invocation) const
{
    invocation.environment.append({{u"QT_QPA_PLATFORM"_s, u"wayland"_s},
                                   {u"WAYLAND_DISPLAY"_s, u"wayland-1"_s},
                                   {u"DISPLAY"_s, QString()}});
    return invocation;
}

QJsonObject Wayland::tree() const
{
    QProcess process;
    process.setProcessEnvironment(m_process.processEnvironment());
    process.start(u"swaymsg"_s, {u"--raw"_s, u"--type"_s, u"get_tree"_s});
    process.waitForFinished();
    return QJsonDocument::fromJson(process.readAllStandardOutput()).object();
}

QJsonObject Wayland::window(const Program &program) const
{
    return nodeOf(program.processId(), tree());
}

QRect Wayland::area(const Program &program) const
{
    return rectOf(window(program).value(u"rect"_s).toObject())
        .translated(m_desktop.display().area(m_window).topLeft());
}

QImage Wayland::picture(const Program &program) const
{
    return m_desktop.display().picture(area(program));
}

} // namespace pixpress::test
