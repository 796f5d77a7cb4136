// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "curlrun.h"

#include "queuerun.h"
#include "support.h"

#include <curl/curl.h>

#include <QElapsedTimer>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace bench {

namespace {

class File
{
public:
    File(const QString &path, int flags) : m_descriptor(open(qPrintable(path), flags, 0666))
    {
        if (m_descriptor < 0)
            throw Failure(u"%1: %2"_s.arg(path, qt_error_string(errno)));
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    ~File() { close(m_descriptor); }

    qint64 size() const
    {
        struct stat status;
        return fstat(m_descriptor, &status) == 0 ? status.st_size : -1;
    }

    size_t read(char *to, size_t size)
    {
        size_t done = 0;
        while (done < size) {
            const ssize_t got = ::read(m_descriptor, to + done, size - done);
            if (got <= 0)
                break;
            done += static_cast<size_t>(got);
        }
        return done;
    }

    size_t write(const char *from, size_t size)
    {
        size_t done = 0;
        while (done < size) {
            const ssize_t put = ::write(m_descriptor, from + done, size - done);
            if (put < 0)
                break;
            done += static_cast<size_t>(put);
        }
        return done;
    }

private:
    const int m_descriptor;
};

size_t readPiece(char *to, size_t size, size_t count, void *file)
{
    return static_cast<File *>(file)->read(to, size * count);
}

size_t writePiece(char *from, size_t size, size_t count, void *file)
{
    return static_cast<File *>(file)->write(from, size * count);
}

/// An answer that is held in memory, of which libcurl tells the size before the first piece.
struct Answer
{
    CURL *easy = nullptr;
    QByteArray bytes;
};

size_t append(char *from, size_t size, size_t count, void *to)
{
    auto &[easy, bytes] = *static_cast<Answer *>(to);
    if (bytes.isEmpty()) {
        curl_off_t length = 0;
        curl_easy_getinfo(easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
        bytes.reserve(length);
    }
    bytes.append(from, static_cast<qsizetype>(size * count));
    return size * count;
}

class Client
{
public:
    Client(const QUrl &service, Holding holding)
        : m_shrink(service.toEncoded() + "/shrink"), m_holding(holding)
    {
        // What the product's requests carry, too: a key, and no content type.
        const QByteArray key = "Authorization: Basic " + QByteArray("api:key").toBase64();
        m_headers = curl_slist_append(m_headers, key.constData());
        m_headers = curl_slist_append(m_headers, "Content-Type:");
        set(CURLOPT_HTTPHEADER, m_headers);
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_BUFFERSIZE, 512L << 10);
        set(CURLOPT_UPLOAD_BUFFERSIZE, 512L << 10);
    }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    ~Client()
    {
        curl_easy_cleanup(m_easy);
        curl_slist_free_all(m_headers);
    }

    void compress(const QUrl &source)
    {
        File input(source.toLocalFile(), O_RDONLY);
        const qint64 size = input.size();
        QByteArray image;
        set(CURLOPT_POST, 1L);
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(size));
        if (m_holding == Holding::whole) {
            image = QByteArray(size, Qt::Uninitialized);
            input.read(image.data(), static_cast<size_t>(size));
            set(CURLOPT_POSTFIELDS, image.constData());
        } else {
            set(CURLOPT_POSTFIELDS, nullptr);
            set(CURLOPT_READFUNCTION, &readPiece);
            set(CURLOPT_READDATA, &input);
        }
        Answer answer{.easy = m_easy, .bytes = {}};
        perform(m_shrink, 201, &append, &answer);
        image = {};

        curl_header *location = nullptr;
        if (curl_easy_header(m_easy, "location", 0, CURLH_HEADER, -1, &location) != CURLHE_OK)
            throw Failure(u"The server names no output."_s);
        fetch(QByteArray(location->value), outputPath(source));
    }

private:
    void fetch(const QByteArray &url, const QString &path)
    {
        set(CURLOPT_HTTPGET, 1L);
        if (m_holding == Holding::inPieces) {
            File output(path, O_WRONLY | O_CREAT | O_EXCL);
            perform(url, 200, &writePiece, &output);
            return;
        }
        Answer answer{.easy = m_easy, .bytes = {}};
        perform(url, 200, &append, &answer);
        const QByteArray &bytes = answer.bytes;
        File output(path, O_WRONLY | O_CREAT | O_EXCL);
        if (output.write(bytes.constData(), static_cast<size_t>(bytes.size())) !=
            static_cast<size_t>(bytes.size()))
            throw Failure(u"%1: %2"_s.arg(path, qt_error_string(errno)));
    }

    void perform(const QByteArray &url, long expectedStatus, curl_write_callback write, void *to)
    {
        set(CURLOPT_URL, url.constData());
        set(CURLOPT_WRITEFUNCTION, write);
        set(CURLOPT_WRITEDATA, to);
        const CURLcode code = curl_easy_perform(m_easy);
        long status = 0;
        curl_easy_getinfo(m_easy, CURLINFO_RESPONSE_CODE, &status);
        if (code != CURLE_OK || status != expectedStatus)
            throw Failure(u"libcurl alone fails with status %1: %2"_s.arg(status).arg(
                QLatin1StringView(curl_easy_strerror(code))));
    }

    template <typename T>
    void set(CURLoption option, T value)
    {
        curl_easy_setopt(m_easy, option, value);
    }

    CURL *const m_easy = curl_easy_init();
    curl_slist *m_headers = nullptr;
    const QByteArray m_shrink;
    const Holding m_holding;
};

} // namespace

double runCurl(const QUrl &service, const QList<QUrl> &files, Holding holding)
{
    QElapsedTimer timer;
    timer.start();
    Client client(service, holding);
    for (const QUrl &file : files)
        client.compress(file);
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

} // namespace bench
