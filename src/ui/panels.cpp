// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/panels.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QMimeDatabase>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QStandardPaths>

#include <memory>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

/// "PNG image, JPEG image (*.png *.jpg ...)"
QString nameFilter(const QStringList &contentTypes)
{
    QStringList names;
    QStringList patterns;
    for (const QString &contentType : contentTypes) {
        const QMimeType type = QMimeDatabase().mimeTypeForName(contentType);
        names.append(type.comment());
        patterns.append(type.globPatterns());
    }
    return u"%1 (%2)"_s.arg(names.join(u", "_s), patterns.join(u' '));
}

QUrl picturesFolder()
{
    return QUrl::fromLocalFile(
        QStandardPaths::standardLocations(QStandardPaths::PicturesLocation).constFirst());
}

} // namespace

void Panels::setWindow(QQmlEngine *engine, QQuickWindow *window)
{
    m_engine = engine;
    m_window = window;
}

QList<QUrl> Panels::pickFiles(const OpenPanelRequest &request)
{
    QStringList filters{nameFilter(request.contentTypes)};
    if (request.allowsOtherFileTypes)
        filters.append(QCoreApplication::translate("Panels", "All files (*)"));
    return run(u"FilePanel"_s,
               {{u"title"_s, request.message},
                {u"nameFilters"_s, filters},
                {u"currentFolder"_s, picturesFolder()}},
               "selectedFiles")
        .value<QList<QUrl>>();
}

std::optional<QUrl> Panels::pickFolder()
{
    const QUrl picked = run(u"FolderPanel"_s, {}, "selectedFolder").toUrl();
    return picked.isEmpty() ? std::nullopt : std::optional(picked);
}

QVariant Panels::run(const QString &type, const QVariantMap &properties, const char *result)
{
    if (!m_engine || !m_window)
        return {};
    QQmlComponent component(m_engine, QUrl(u"qrc:/qt/qml/Pixpress/%1.qml"_s.arg(type)));
    const std::unique_ptr<QObject> panel(component.createWithInitialProperties(properties));
    if (!panel) {
        qWarning("%s", qUtf8Printable(component.errorString()));
        return {};
    }
    panel->setProperty("parentWindow", QVariant::fromValue<QWindow *>(m_window));
    QEventLoop loop;
    QObject::connect(panel.get(), SIGNAL(accepted()), &loop, SLOT(quit()));
    QObject::connect(panel.get(), SIGNAL(rejected()), &loop, SLOT(quit()));
    QMetaObject::invokeMethod(panel.get(), "open");
    loop.exec();
    constexpr int acceptedResult = 1; // of the dialogs' StandardCode
    return panel->property("result").toInt() == acceptedResult ? panel->property(result)
                                                               : QVariant();
}

} // namespace pixpress
