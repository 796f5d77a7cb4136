// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pictures/codec.h"

#include <QByteArray>
#include <QString>

#include <httplib.h>

/// The forms that answers have.
namespace pixpress {

/// {"error": ..., "message": ...} with a status.
struct Refusal
{
    int status = 400;
    QByteArray error; ///< A short name for programs.
    QString message;  ///< A sentence for a person.
};

Refusal refusalFor(const CodecError &error);

void answer(httplib::Response &response, const Refusal &refusal);

/// The picture itself, sent from `encoded` without another copy.
void answerPicture(httplib::Response &response, const Encoded &encoded);

/// The description of an upload and of its compressed copy at `url`.
void answerDescription(httplib::Response &response, qint64 inputSize, const PictureInfo &input,
                       const Encoded &output, const QByteArray &url);

} // namespace pixpress
