// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include "service/wire.h"

#include <QJsonDocument>

using namespace pixpress;

// The explanation of a failure: there is one exactly when both of its texts are there.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray body = fuzz::bytesOf(data, size);
    const auto read = APIErrorResponse::decode(body);
    const QJsonDocument document = QJsonDocument::fromJson(body);
    const QJsonValue error = document[QLatin1String("error")];
    const QJsonValue message = document[QLatin1String("message")];
    HOLDS(read.has_value() == (error.isString() && message.isString()));
    HOLDS(!read || (read->error == error.toString() && read->message == message.toString()));
    return 0;
}
