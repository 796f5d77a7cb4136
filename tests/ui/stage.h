// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/scriptedserver.h"
#include "ui/desktopsettings.h"
#include "ui/pixpressapp.h"

#include <QQmlEngine>
#include <QTemporaryDir>

#include <memory>

namespace pixpress::test {

/// Has what an engine shows look as if the desktop preferred this.
void prefer(QQmlEngine &engine, const DesktopPreferences &preferences);

/// The application on a stage: a service that answers as it is told, settings that leave no trace,
/// files of its own, and stand-ins for the panels and the file browser.
class Stage : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(pixpress::PixpressApp *app READ app NOTIFY appChanged)
    Q_PROPERTY(QList<QUrl> picked MEMBER picked)
    Q_PROPERTY(QUrl pickedFolder MEMBER pickedFolder)
    Q_PROPERTY(QDate today MEMBER today)
    Q_PROPERTY(QList<QUrl> revealed MEMBER revealed)
    Q_PROPERTY(QList<QUrl> opened MEMBER opened)
    Q_PROPERTY(QList<int> batches MEMBER batches)
    Q_PROPERTY(int waiting READ waiting)
    Q_PROPERTY(QStringList outputRequests READ outputRequests)
    Q_PROPERTY(int uploads READ uploads)
    Q_PROPERTY(QStringList keys READ keys)

public:
    Stage();
    ~Stage() override;

    PixpressApp *app() { return m_app.get(); }

    /// Starts the application anew, with this key stored; without one when it is empty.
    Q_INVOKABLE void start(const QString &key = QStringLiteral("stored"));
    /// Starts the edition that compresses on this computer, without a key.
    Q_INVOKABLE void startOffline();
    /// Makes a file of so many bytes that is no picture; its address.
    Q_INVOKABLE QUrl file(const QString &name, int bytes = 1000);
    /// A copy of one of the project's own pictures.
    Q_INVOKABLE QUrl sample(const QString &name);
    /// Makes a picture of so many pixels: a third red, a third green, a third blue, from left to
    /// right.
    Q_INVOKABLE QUrl picture(const QString &name, int width, int height);
    /// Makes a PNG that ends in the middle of its pixels.
    Q_INVOKABLE QUrl brokenPicture(const QString &name);
    /// Makes a JPEG of so many pixels whose left half is red and whose right half is blue, and that
    /// says that it is to be turned by 90 degrees clockwise.
    Q_INVOKABLE QUrl turnedPhoto(const QString &name, int width, int height);
    /// What an upload is said to be, and the bytes that the output then has.
    Q_INVOKABLE void answerWith(int inputSize, int outputSize);
    Q_INVOKABLE void failWith(int status, const QString &message);
    /// Keys other than this are answered with 401.
    Q_INVOKABLE void acceptOnly(const QString &key) { m_acceptedKey = key; }
    /// Connections end in the middle of the answer, until the next start().
    Q_INVOKABLE void breakConnections();
    /// While held, requests wait for their answers.
    Q_INVOKABLE void hold() { server.hold(); }
    Q_INVOKABLE void releaseOne() { server.releaseOne(); }
    Q_INVOKABLE void release() { server.release(); }
    Q_INVOKABLE void setCount(qint64 count);
    /// As before every compression: a new month starts when there is one.
    Q_INVOKABLE void rollOver() { m_app->appState()->quotaTracker()->checkMonthRollover(); }
    /// The colours that the desktop asks for.
    Q_INVOKABLE void setDark(bool dark);
    /// What the desktop is said to prefer, by the names of DesktopPreferences; what is left out is
    /// as usual.
    Q_INVOKABLE void prefer(const QVariantMap &preferences);
    /// Puts a text on the clipboard.
    Q_INVOKABLE void copy(const QString &text);
    Q_INVOKABLE QString storedKey() const;
    Q_INVOKABLE QString options() const; ///< The current options, as text to compare.

    /// What assistive technology is told of an item: its role, as a number of QAccessible, and
    /// name.
    Q_INVOKABLE QString described(QObject *item);
    /// The animations that an item's own properties have gone through, each with its figures.
    Q_INVOKABLE QStringList animations(QObject *item);
    /// As assistive technology does; false when the item has no such action.
    Q_INVOKABLE bool act(QObject *item, const QString &action);
    Q_INVOKABLE void openPage(const QUrl &page) { opened.append(page); }

    int waiting() const { return static_cast<int>(server.waiting()); }
    int uploads() const;
    QStringList outputRequests() const; ///< The bodies of the requests for outputs.
    QStringList keys() const;           ///< Of the requests so far.

    ScriptedServer server;
    QList<QUrl> picked;
    QUrl pickedFolder;
    QDate today; ///< By the application's clock.
    QList<QUrl> revealed;
    QList<QUrl> opened; ///< In the browser.
    QList<int> batches; ///< Sizes of what was added at once.

Q_SIGNALS:
    void appChanged();
    void panelOpened(); ///< Of either kind; it closes when all who are told have returned.

private:
    void startWith(const std::optional<ServiceConfig> &service, const QString &key);
    Answer answer(const Request &request);

    QTemporaryDir m_dir;
    TransientSettings m_settings;
    int m_inputSize = 1000;
    int m_outputSize = 400;
    int m_status = 0; ///< Of the failure to answer with; 0 for none.
    QString m_message;
    QString m_acceptedKey;
    std::unique_ptr<PixpressApp> m_app;
};

} // namespace pixpress::test
