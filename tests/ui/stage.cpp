// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "stage.h"

#include "ui/appearance.h"

#include <QAccessible>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QEasingCurve>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaEnum>
#include <QPainter>
#include <QPalette>
#include <QTcpSocket>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

QString keyOf(const Request &request)
{
    const QByteArray credentials = request.headers.value("authorization").mid(6); // "Basic "
    return QString::fromUtf8(QByteArray::fromBase64(credentials).mid(4));         // "api:"
}

} // namespace

Stage::Stage()
{
    server.setScript([this](const Request &request) { return answer(request); });
    QDesktopServices::setUrlHandler(u"https"_s, this, "openPage");
    start();
}

Stage::~Stage()
{
    QDesktopServices::unsetUrlHandler(u"https"_s);
}

void Stage::start(const QString &key)
{
    startWith(ServiceConfig{.baseURL = server.url(), .limits = {}}, key);
}

void Stage::startOffline()
{
    startWith(std::nullopt, {});
}

void Stage::startWith(const std::optional<ServiceConfig> &service, const QString &key)
{
    const std::unique_ptr<PixpressApp> previous = std::move(m_app);
    m_settings.setValue(u"pixpress_api_key"_s, key);
    server.setRaw({});
    server.release();
    server.requests.clear();
    picked.clear();
    pickedFolder.clear();
    today = QDate::currentDate();
    revealed.clear();
    opened.clear();
    batches.clear();
    m_acceptedKey.clear();
    answerWith(1000, 400);
    m_app = std::make_unique<PixpressApp>(
        m_settings, service,
        PixpressApp::Seams{.openPanel =
                               [this](const OpenPanelRequest &) {
                                   Q_EMIT panelOpened();
                                   return picked;
                               },
                           .folderChooser =
                               [this] {
                                   Q_EMIT panelOpened();
                                   return pickedFolder.isEmpty() ? std::nullopt
                                                                 : std::optional(pickedFolder);
                               },
                           .reveal = [this](const QUrl &url) { revealed.append(url); },
                           .clock = [this] { return today.startOfDay(); }});
    connect(m_app->appState()->compressionQueue(), &CompressionQueue::tasksAdded, this,
            [this](qsizetype, qsizetype count) { batches.append(static_cast<int>(count)); });
    Q_EMIT appChanged();
}

QUrl Stage::file(const QString &name, int bytes)
{
    QFile file(m_dir.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(bytes, 'x')) != bytes)
        qFatal("%s cannot be written.", qUtf8Printable(name));
    return QUrl::fromLocalFile(file.fileName());
}

QUrl Stage::picture(const QString &name, int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    for (const auto &[index, colour] : {std::pair(0, Qt::red), {1, Qt::green}, {2, Qt::blue}})
        painter.fillRect(QRectF(index * width / 3.0, 0, width / 3.0, height), colour);
    painter.end();
    if (!image.save(m_dir.filePath(name)))
        qFatal("%s cannot be written.", qUtf8Printable(name));
    return QUrl::fromLocalFile(m_dir.filePath(name));
}

QUrl Stage::brokenPicture(const QString &name)
{
    QFile file(picture(name, 300, 300).toLocalFile());
    if (!file.resize(file.size() / 2))
        qFatal("%s cannot be cut.", qUtf8Printable(name));
    return QUrl::fromLocalFile(file.fileName());
}

QUrl Stage::turnedPhoto(const QString &name, int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter(&image).fillRect(width / 2, 0, width, height, Qt::blue);
    QImageWriter writer(m_dir.filePath(name), "jpeg");
    writer.setTransformation(QImageIOHandler::TransformationRotate90);
    if (!writer.write(image))
        qFatal("%s cannot be written.", qUtf8Printable(name));
    return QUrl::fromLocalFile(m_dir.filePath(name));
}

QUrl Stage::sample(const QString &name)
{
    const QString copy = m_dir.filePath(name);
    if (!QFile::exists(copy) &&
        !QFile::copy(QDir(QStringLiteral(PIXPRESS_SAMPLES)).filePath(name), copy))
        qFatal("%s cannot be copied.", qUtf8Printable(name));
    return QUrl::fromLocalFile(copy);
}

void Stage::answerWith(int inputSize, int outputSize)
{
    m_status = 0;
    m_inputSize = inputSize;
    m_outputSize = outputSize;
}

void Stage::failWith(int status, const QString &message)
{
    m_status = status;
    m_message = message;
}

void Stage::breakConnections()
{
    server.setRaw([](QTcpSocket &socket, const QByteArray &) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Le");
        socket.disconnectFromHost();
    });
}

void Stage::setDark(bool dark)
{
    QGuiApplication::setPalette(dark ? QPalette(QColor(0x323232), QColor(0x1E1E1E))
                                     : QPalette(QColor(0xECECEC), QColor(0xECECEC)));
}

void prefer(QQmlEngine &engine, const DesktopPreferences &preferences)
{
    const int id = qmlTypeId("Pixpress", 1, 0, "Appearance");
    engine.singletonInstance<Appearance *>(id)->setPreferences(preferences);
}

void Stage::prefer(const QVariantMap &preferences)
{
    test::prefer(*qmlEngine(this), {.reducedMotion = preferences.value(u"reducedMotion"_s).toBool(),
                                    .highContrast = preferences.value(u"highContrast"_s).toBool(),
                                    .textScale = preferences.value(u"textScale"_s, 1).toDouble()});
}

QStringList Stage::animations(QObject *item)
{
    QStringList found;
    for (const QObject *behavior : item->children()) {
        if (!behavior->inherits("QQuickBehavior"))
            continue;
        const auto *animation = behavior->property("animation").value<QObject *>();
        if (!animation)
            continue; // it is not made before it is needed
        QString text = QLatin1StringView(animation->metaObject()->className());
        text.remove("QQuick"_L1);
        if (animation->inherits("QQuickSpringAnimation")) {
            for (const char *name : {"spring", "damping", "mass"})
                text += u" %1 %2"_s.arg(QLatin1StringView(name))
                            .arg(animation->property(name).toReal());
        } else {
            const auto easing = animation->property("easing").value<QEasingCurve>().type();
            text += u" duration %1 easing %2"_s.arg(animation->property("duration").toInt())
                        .arg(QLatin1StringView(
                            QMetaEnum::fromType<QEasingCurve::Type>().valueToKey(easing)));
        }
        found.append(text);
    }
    return found;
}

bool Stage::act(QObject *item, const QString &action)
{
    QAccessible::setActive(true);
    auto *interface = QAccessible::queryAccessibleInterface(item);
    auto *actions = interface ? interface->actionInterface() : nullptr;
    if (!actions || !actions->actionNames().contains(action))
        return false;
    actions->doAction(action);
    return true;
}

QString Stage::described(QObject *item)
{
    QAccessible::setActive(true);
    auto *interface = QAccessible::queryAccessibleInterface(item);
    return interface ? u"%1 %2"_s.arg(interface->role()).arg(interface->text(QAccessible::Name))
                     : QString();
}

void Stage::setCount(qint64 count)
{
    m_app->appState()->quotaTracker()->setCurrentCount(count);
}

void Stage::copy(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

QString Stage::storedKey() const
{
    return m_settings.value(u"pixpress_api_key"_s).toString();
}

QString Stage::options() const
{
    const auto body = m_app->appState()->options().toJSON();
    return body ? QString::fromUtf8(QJsonDocument(*body).toJson(QJsonDocument::Compact))
                : QString();
}

int Stage::uploads() const
{
    return static_cast<int>(std::ranges::count_if(server.requests, [](const Request &request) {
        return request.target == "/shrink" && !request.body.isEmpty();
    }));
}

QStringList Stage::outputRequests() const
{
    QStringList bodies;
    for (const Request &request : server.requests) {
        if (request.target != "/shrink")
            bodies.append(QString::fromUtf8(request.body));
    }
    return bodies;
}

QStringList Stage::keys() const
{
    QStringList keys;
    for (const Request &request : server.requests)
        keys.append(keyOf(request));
    return keys;
}

Answer Stage::answer(const Request &request)
{
    if (!m_acceptedKey.isEmpty() && keyOf(request) != m_acceptedKey)
        return {.status = 401, .body = R"({"error":"Unauthorized","message":"No."})"};
    if (m_status != 0) {
        const QJsonObject body{{u"error"_s, u"Failed"_s}, {u"message"_s, m_message}};
        return {.status = m_status, .body = QJsonDocument(body).toJson()};
    }
    if (request.target != "/shrink")
        return {.status = 200, .body = QByteArray(m_outputSize, 'y')};
    if (request.body.isEmpty())
        return {.status = 400, .body = R"({"error":"InputMissing","message":"File is empty."})"};
    Answer answer = shrinkAnswer(server.url(u"/output/1"_s));
    auto body = QJsonDocument::fromJson(answer.body).object();
    auto input = body[u"input"].toObject();
    input[u"size"] = m_inputSize;
    body[u"input"] = input;
    answer.body = QJsonDocument(body).toJson();
    return answer;
}

} // namespace pixpress::test
