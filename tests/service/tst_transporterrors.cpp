// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/transporterrors.h"

#include <QTest>

using namespace pixpress;
using namespace Qt::StringLiterals;

/// What a person reads instead of libcurl's numbers.
class TransportErrorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void code_hasItsSentence_data();
    void code_hasItsSentence();
};

void TransportErrorsTest::code_hasItsSentence_data()
{
    using enum TransportError::Case;
    QTest::addColumn<CURLcode>("code");
    QTest::addColumn<TransportError::Case>("kind");
    QTest::addColumn<QString>("sentence");
    const auto row = [](CURLcode code, TransportError::Case kind, const QString &sentence) {
        QTest::newRow(curl_easy_strerror(code)) << code << kind << sentence;
    };
    const QString lost = u"The network connection was lost."_s;
    const QString notHttp = u"The server did not answer with HTTP."_s;
    row(CURLE_OPERATION_TIMEDOUT, timedOut, u"The request timed out."_s);
    row(CURLE_UNSUPPORTED_PROTOCOL, notHTTP, notHttp);
    row(CURLE_WEIRD_SERVER_REPLY, notHTTP, notHttp);
    row(CURLE_BAD_CONTENT_ENCODING, notHTTP, notHttp);
    row(CURLE_COULDNT_RESOLVE_HOST, other,
        u"The server could not be found. Is the computer online?"_s);
    row(CURLE_COULDNT_RESOLVE_PROXY, other, u"The proxy server could not be found."_s);
    row(CURLE_COULDNT_CONNECT, other, u"Could not connect to the server."_s);
    row(CURLE_PEER_FAILED_VERIFICATION, other,
        u"The server's certificate is not valid, so nothing was sent."_s);
    row(CURLE_SSL_CONNECT_ERROR, other, u"A secure connection to the server could not be made."_s);
    row(CURLE_SSL_CACERT_BADFILE, other,
        u"The trusted certificates of this computer could not be read."_s);
    row(CURLE_OUT_OF_MEMORY, other, u"There is not enough memory for this request."_s);
    for (const CURLcode code :
         {CURLE_GOT_NOTHING, CURLE_SEND_ERROR, CURLE_RECV_ERROR, CURLE_PARTIAL_FILE,
          CURLE_SEND_FAIL_REWIND, CURLE_ABORTED_BY_CALLBACK})
        row(code, other, lost);
    row(CURLE_SSL_CIPHER, other, // in libcurl's words, which differ between versions
        u"The request failed: %1."_s.arg(QLatin1String(curl_easy_strerror(CURLE_SSL_CIPHER))));
}

void TransportErrorsTest::code_hasItsSentence()
{
    QFETCH(const CURLcode, code);
    QFETCH(const TransportError::Case, kind);
    QFETCH(const QString, sentence);
    const TransportError error = describe(code);
    QCOMPARE(error.kind, kind);
    QCOMPARE(error.description, sentence);
}

QTEST_APPLESS_MAIN(TransportErrorsTest)
#include "tst_transporterrors.moc"
