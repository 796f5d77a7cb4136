// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/transporterrors.h"

using namespace Qt::StringLiterals;

namespace pixpress {

TransportError otherError(const QString &description)
{
    return {TransportError::Case::other, description};
}

TransportError outOfMemory()
{
    return otherError(u"There is not enough memory for this request."_s);
}

TransportError describe(CURLcode code)
{
    switch (code) {
    case CURLE_OPERATION_TIMEDOUT:
        return {TransportError::Case::timedOut, u"The request timed out."_s};
    case CURLE_UNSUPPORTED_PROTOCOL: // also: an answer without the status line of HTTP
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING: // none was asked for
        return {TransportError::Case::notHTTP, u"The server did not answer with HTTP."_s};
    case CURLE_COULDNT_RESOLVE_HOST:
        return otherError(u"The server could not be found. Is the computer online?"_s);
    case CURLE_COULDNT_RESOLVE_PROXY: return otherError(u"The proxy server could not be found."_s);
    case CURLE_COULDNT_CONNECT: return otherError(u"Could not connect to the server."_s);
    case CURLE_PEER_FAILED_VERIFICATION:
        return otherError(u"The server's certificate is not valid, so nothing was sent."_s);
    case CURLE_SSL_CONNECT_ERROR:
        return otherError(u"A secure connection to the server could not be made."_s);
    case CURLE_SSL_CACERT_BADFILE:
        return otherError(u"The trusted certificates of this computer could not be read."_s);
    case CURLE_OUT_OF_MEMORY: return outOfMemory();
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_SEND_FAIL_REWIND:
    case CURLE_ABORTED_BY_CALLBACK: // only beforeRequest() aborts, when a connection has died
        return otherError(u"The network connection was lost."_s);
    default:
        return otherError(
            u"The request failed: %1."_s.arg(QLatin1StringView(curl_easy_strerror(code))));
    }
}

} // namespace pixpress
