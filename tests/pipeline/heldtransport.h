// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "service/http.h"

#include <QStringList>

/// Takes the place of the HTTP client in a program that links this: each request is held until the
/// test answers it, in whatever order the test likes, on its thread and at once. A random sequence
/// of steps so takes milliseconds, and every step has had all its effects when it returns.
namespace pixpress::test::held {

/// Every request since the last forget(), in the order in which they were made, as text.
const QStringList &made();
/// How many requests have no answer yet.
qsizetype waiting();
/// Whether an unanswered one, counted from the oldest, is an upload.
bool isUpload(qsizetype which);
/// What comes after the answer, too, has been done when this returns.
void answer(qsizetype which, HttpResult result);
void forget();

} // namespace pixpress::test::held
