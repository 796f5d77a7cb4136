// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cli/program.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace pixpress::test {

void Program::prepare(QProcess &process, const QStringList &environment) const
{
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    all.insert(u"HOME"_s, m_home.path());
    all.insert(u"XDG_CONFIG_HOME"_s, m_home.path());
    for (const QString &entry : environment)
        all.insert(entry.section(u'=', 0, 0), entry.section(u'=', 1));
    process.setProcessEnvironment(all);
    process.setWorkingDirectory(m_folder.path());
}

Outcome Program::run(const QStringList &arguments, const QStringList &environment) const
{
    QProcess process;
    prepare(process, environment);
    process.start(file(), arguments);
    const bool hasEnded =
        process.waitForFinished(120'000) && process.exitStatus() == QProcess::NormalExit;
    return {.status = hasEnded ? process.exitCode() : -1,
            .out = process.readAllStandardOutput(),
            .err = process.readAllStandardError()};
}

void Program::copySample(const QString &sample, const QString &name) const
{
    if (!QFile::copy(QStringLiteral(PIXPRESS_SAMPLES "/") + sample, path(name)))
        qFatal("The test cannot copy its pictures.");
}

QByteArray Program::content(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}

} // namespace pixpress::test
