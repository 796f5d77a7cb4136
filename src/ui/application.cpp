// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/application.h"

#include "pipeline/interrupt.h"
#include "ui/accessibleitem.h"
#include "ui/appearance.h"
#include "ui/engine.h"
#include "ui/language.h"
#include "ui/pixpressapp.h"

#include <QDir>
#include <QFont>
#include <QFontDatabase>
#include <QIcon>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <cstdlib>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

void chooseFont()
{
    if (isFontSetByDesktop() || !QFontDatabase::hasFamily(u"Inter"_s))
        return;
    QFont font = QGuiApplication::font();
    font.setFamily(u"Inter"_s);
    QGuiApplication::setFont(font);
}

/// The program's own, which it brings as resources in the sizes that window managers show.
QIcon ownIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128})
        icon.addFile(u":/icon/%1.png"_s.arg(size), {size, size});
    return icon;
}

/// The files that a file manager was told to open with this program.
QList<QUrl> filesToOpen()
{
    QList<QUrl> urls;
    for (const QString &argument : QCoreApplication::arguments().mid(1))
        urls.append(QUrl::fromUserInput(argument, QDir::currentPath(), QUrl::AssumeLocalFile));
    return urls;
}

/// What has to be chosen before the toolkit starts. Returns what it is given, so that it can stand
/// in an initialiser.
int &prepared(int &argc)
{
    // The window is flat colour and text: the processor draws it sooner and in a third of the
    // memory that a graphics driver takes. QT_QUICK_BACKEND chooses otherwise.
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        QQuickWindow::setSceneGraphBackend(u"software"_s);
    return argc;
}

} // namespace

Application::Application(int &argc, char **argv)
    : QGuiApplication(prepared(argc), argv), m_engine(makeEngine())
{
    installAccessibleItems();
    chooseFont();
    installLanguage(*this, chosenLanguage(QLocale::system().uiLanguages()));
    setWindowIcon(ownIcon());
}

Application::~Application() = default;

std::unique_ptr<QQmlApplicationEngine> Application::takeEngine()
{
    return std::move(m_engine);
}

int Application::run(SettingsStore &settings, const std::optional<ServiceConfig> &service)
{
    onInterrupt(this, [&settings] {
        settings.flush();
        // Files are written on this thread: none is being written here. Everything else is in
        // memory, and destroying it would wait for pictures that are being decoded.
        std::_Exit(EXIT_SUCCESS);
    });
    PixpressApp app(settings, service);
    const auto engine = takeEngine();
    if (!app.show(*engine))
        return EXIT_FAILURE;
    app.openFiles(filesToOpen());
    return exec();
}

} // namespace pixpress
