// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A file manager of one use: a window that, pressed upon, drags the files whose addresses are its
// arguments. As file managers do it lets the target choose between copying, moving and linking, and
// would rather move. Prints what happens.

#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QRasterWindow>
#include <QUrl>

#include <cstdio>

namespace {

const char *nameOf(Qt::DropAction action)
{
    switch (action) {
    case Qt::CopyAction: return "copy";
    case Qt::MoveAction:
    case Qt::TargetMoveAction: return "move";
    case Qt::LinkAction: return "link";
    case Qt::IgnoreAction:
    case Qt::ActionMask: break;
    }
    return "nothing";
}

void say(const char *what, const char *action = "")
{
    std::printf("%s%s\n", what, action);
    std::fflush(stdout);
}

class SourceWindow : public QRasterWindow
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QLinearGradient gradient(0, 0, width(), height());
        gradient.setColorAt(0, Qt::white);
        gradient.setColorAt(1, Qt::darkGreen);
        painter.fillRect(0, 0, width(), height(), gradient);
    }

    void mousePressEvent(QMouseEvent *) override
    {
        QList<QUrl> urls;
        for (const QString &argument : QCoreApplication::arguments().mid(1))
            urls.append(QUrl::fromEncoded(argument.toLatin1()));
        auto *const data = new QMimeData;
        data->setUrls(urls);
        auto *const drag = new QDrag(this);
        drag->setMimeData(data);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            if (action != Qt::IgnoreAction)
                say("offered ", nameOf(action));
        });
        // It lives until the target has said that it has read the data.
        connect(drag, &QObject::destroyed, this, [] { say("read"); });
        QMetaObject::invokeMethod(this, [] { say("started"); }, Qt::QueuedConnection);
        say("done ",
            nameOf(drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction, Qt::MoveAction)));
    }
};

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    SourceWindow window;
    window.setTitle(QStringLiteral("Files"));
    window.setGeometry(1300, 700, 200, 200); // beside the window that is dragged onto
    window.show();
    return QGuiApplication::exec();
}
