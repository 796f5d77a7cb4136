// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "localservice/answers.h"

#include <QByteArray>

#include <httplib.h>

#include <optional>

/// What the head of a request tells, and how one is refused for it before its body is read.
namespace pixpress {

inline constexpr std::string_view uploadPath = "/shrink";
inline constexpr std::string_view outputPrefix = "/output/";

bool isOutput(const httplib::Request &request);
QByteArray outputIdOf(const httplib::Request &request);

bool hasBody(const httplib::Request &request);

/// The stated length of the body; none when it comes in chunks.
std::optional<qint64> bodyLength(const httplib::Request &request);

Refusal inputMissing();
Refusal tooLarge(qint64 limit);

/// Requests that a web page has made a browser send. It marks them with their origin; those of a
/// page whose own name was made to lead to this machine ask for a host that is not this one.
std::optional<Refusal> refuseWebPage(const httplib::Request &request, int port);

/// Addresses and methods that there are not, and bodies that cannot be taken.
std::optional<Refusal> refuseForm(const httplib::Request &request, qint64 maxBody);

} // namespace pixpress
