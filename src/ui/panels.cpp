// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/panels.h"

#include "ui/engine.h"
#include "ui/fileportal.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStandardPaths>

#include <memory>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

QString namesOf(const QStringList &contentTypes)
{
    QStringList names;
    for (const QString &contentType : contentTypes)
        names.append(QMimeDatabase().mimeTypeForName(contentType).comment());
    return names.join(u", "_s);
}

/// "PNG image, JPEG image (*.png *.PNG *.jpg ...)": a dialog may tell upper case from lower, and
/// cameras write it.
QString patternFilter(const FileChoice::Filter &filter)
{
    QStringList patterns;
    for (const QString &contentType : filter.contentTypes) {
        const QMimeType type = QMimeDatabase().mimeTypeForName(contentType);
        for (const QString &pattern : type.globPatterns())
            patterns.append({pattern, pattern.toUpper()});
    }
    if (patterns.isEmpty())
        patterns.append(u"*"_s);
    return u"%1 (%2)"_s.arg(filter.name, patterns.join(u' '));
}

/// A new account may not have a folder for pictures yet.
QUrl picturesFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    return QUrl::fromLocalFile(QFileInfo(folder).isDir() ? folder : QDir::homePath());
}

/// The button to the parent folder in Qt's dialog shows an icon alone, and so has no name for
/// screen readers.
void nameUpButton(const QQuickItem *item)
{
    for (const QQuickItem *child : item->childItems())
        nameUpButton(child);
    if (!item->inherits("QQuickFolderBreadcrumbBar"))
        return;
    if (auto *button = item->property("upButton").value<QObject *>()) {
        constexpr int iconOnly = 0; // of AbstractButton's Display
        button->setProperty("display", iconOnly);
        button->setProperty("text", QCoreApplication::translate("Panels", "Parent Folder"));
    }
}

} // namespace

void Panels::setWindow(QQmlEngine *engine, QQuickWindow *window)
{
    m_engine = engine;
    m_window = window;
}

QList<QUrl> Panels::pickFiles(const OpenPanelRequest &request)
{
    if (!m_window)
        return {};
    FileChoice choice{.title = request.message,
                      .filters = {{namesOf(request.contentTypes), request.contentTypes}},
                      .currentFolder = picturesFolder()};
    if (request.allowsOtherFileTypes)
        choice.filters.append({QCoreApplication::translate("Panels", "All files")});
    if (const auto picked = chooseThroughPortal(choice, *m_window))
        return *picked;
    QStringList filters;
    for (const FileChoice::Filter &filter : choice.filters)
        filters.append(patternFilter(filter));
    return run(u"FilePanel"_s,
               {{u"title"_s, choice.title},
                {u"nameFilters"_s, filters},
                {u"currentFolder"_s, choice.currentFolder}},
               "selectedFiles")
        .value<QList<QUrl>>();
}

std::optional<QUrl> Panels::pickFolder(const QUrl &current)
{
    if (!m_window)
        return std::nullopt;
    const FileChoice choice{
        .title = QCoreApplication::translate("FolderPanel",
                                             "Choose where Pixpress should save compressed images"),
        .isFolder = true,
        .acceptLabel = QCoreApplication::translate("FolderPanel", "Select Folder"),
        .currentFolder = current};
    if (const auto picked = chooseThroughPortal(choice, *m_window))
        return picked->isEmpty() ? std::nullopt : std::optional(picked->first());
    QVariantMap properties{{u"title"_s, choice.title}, {u"acceptLabel"_s, choice.acceptLabel}};
    if (!current.isEmpty())
        properties[u"currentFolder"_s] = current;
    const QUrl picked = run(u"FolderPanel"_s, properties, "selectedFolder").toUrl();
    return picked.isEmpty() ? std::nullopt : std::optional(picked);
}

QVariant Panels::run(const QString &type, const QVariantMap &properties, const char *result)
{
    if (!m_engine || !m_window)
        return {};
    QQmlComponent component(m_engine, viewURL(type));
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
    nameUpButton(m_window->contentItem());
    loop.exec();
    constexpr int acceptedResult = 1; // of the dialogs' StandardCode
    return panel->property("result").toInt() == acceptedResult ? panel->property(result)
                                                               : QVariant();
}

} // namespace pixpress
