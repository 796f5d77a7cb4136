// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "home.h"

#include <QDir>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s cannot be written.", qUtf8Printable(path));
}

} // namespace

Home::Home()
{
    for (const char *folder : {"files", "config/Pixpress", "cache", "data", "bin", "run"})
        QDir(m_folder.path()).mkpath(QString::fromLatin1(folder));
    QFile::setPermissions(m_folder.filePath(u"run"_s), ownerOnly);
}

QProcessEnvironment Home::environment() const
{
    // Nothing of the session that the test is run from may be seen.
    const QProcessEnvironment ours = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment environment;
    for (const QString &name : ours.keys()) {
        if (name.endsWith(u"SAN_OPTIONS"))
            environment.insert(name, ours.value(name));
    }
    environment.insert(u"PATH"_s, m_folder.filePath(u"bin:"_s) + ours.value(u"PATH"_s));
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.insert(u"HOME"_s, m_folder.path());
    environment.insert(u"XDG_CONFIG_HOME"_s, m_folder.filePath(u"config"_s));
    environment.insert(u"XDG_CACHE_HOME"_s, m_folder.filePath(u"cache"_s));
    environment.insert(u"XDG_DATA_HOME"_s, m_folder.filePath(u"data"_s));
    environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.filePath(u"run"_s));
    return environment;
}

QString Home::path(const QString &name) const
{
    return m_folder.filePath(u"files/"_s + name);
}

QString Home::sample(const QString &sample, const QString &name) const
{
    if (!QFile::copy(QStringLiteral(PIXPRESS_SAMPLES "/") + sample, path(name)))
        qFatal("The sample %s cannot be copied.", qUtf8Printable(sample));
    return path(name);
}

QString Home::file(const QString &name, const QByteArray &content) const
{
    write(path(name), content);
    return path(name);
}

QStringList Home::fileNames() const
{
    return QDir(path({})).entryList(QDir::Files, QDir::Name);
}

qint64 Home::size(const QString &name) const
{
    return QFileInfo(path(name)).size();
}

QString Home::settingsPath(const QString &application) const
{
    return m_folder.filePath(u"config/Pixpress/%1.json"_s.arg(application));
}

QJsonObject Home::settings(const QString &application) const
{
    QFile file(settingsPath(application));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

void Home::store(const QString &application, const QJsonObject &settings) const
{
    write(settingsPath(application), QJsonDocument(settings).toJson());
}

QString Home::configure(const QString &name, const QByteArray &content) const
{
    const QString path = m_folder.filePath(u"config/"_s + name);
    write(path, content);
    return path;
}

void Home::command(const QString &name, const QByteArray &script) const
{
    const QString path = m_folder.filePath(u"bin/"_s + name);
    write(path, "#!/bin/sh\n" + script);
    QFile::setPermissions(path, ownerOnly);
}

} // namespace pixpress::test
