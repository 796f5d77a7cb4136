// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queueoftest.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace pixpress::test {

QString text(const TaskStatus &status)
{
    struct Visitor
    {
        QString operator()(const status::Completed &) const { return u"completed"_s; }
        QString operator()(const status::Failed &failed) const { return failed.error; }
        QString operator()(const status::Pending &) const { return u"pending"_s; }
        QString operator()(const status::Uploading &) const { return u"uploading"_s; }
        QString operator()(const status::Compressing &) const { return u"compressing"_s; }
        QString operator()(const status::Downloading &) const { return u"downloading"_s; }
    };
    return std::visit(Visitor{}, status);
}

void QueueOfTest::makeQueue(const std::optional<QSslConfiguration> &tls, const QString &authority)
{
    m_authority = authority;
    m_folder = std::make_unique<QTemporaryDir>();
    m_shrinkCount.reset();
    m_fetchCount.reset();
    m_output = "output";
    m_now = QDateTime(QDate(2026, 11, 21), QTime(12, 0));
    const auto script = [this](const Request &request) {
        if (request.target == "/shrink")
            return shrinkAnswer(m_server->url(u"/output/x"_s), m_shrinkCount);
        Answer answer{.body = m_output};
        if (m_fetchCount)
            answer.headers.append({"Compression-Count", QByteArray::number(*m_fetchCount)});
        return answer;
    };
    m_server = std::make_unique<ScriptedServer>(script, QHostAddress::LocalHost, tls);
    m_settings = std::make_unique<TransientSettings>();
    KeychainHelper::saveAPIKey(*m_settings, u"key"_s);
    m_tracker = std::make_unique<QuotaTracker>(*m_settings, [this] { return m_now; });
    m_queue = std::make_unique<CompressionQueue>(
        *m_settings, ServiceConfig{.baseURL = m_server->url(), .limits = {.caBundle = authority}});
    m_queue->setQuotaTracker(m_tracker.get());
}

void QueueOfTest::removeQueue()
{
    m_queue.reset();
    m_tracker.reset();
    m_server.reset();
}

QUrl QueueOfTest::file(const QString &name, const QByteArray &content)
{
    QFile file(m_folder->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("The test cannot write its files.");
    return QUrl::fromLocalFile(file.fileName());
}

QByteArray QueueOfTest::contentOf(const QString &name) const
{
    QFile file(m_folder->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no such file)");
}

QStringList QueueOfTest::statuses() const
{
    QStringList list;
    for (const CompressionTask &task : m_queue->tasks())
        list.append(text(task.status));
    return list;
}

void QueueOfTest::add(const QList<QUrl> &urls, const CompressionOptions &options)
{
    m_queue->addFiles(urls, options);
}

} // namespace pixpress::test
