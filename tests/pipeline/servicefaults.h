// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/numberedpicture.h"

#include <QString>

namespace pixpress::test {

/// What goes wrong with one run of a task.
enum class Fault {
    none,
    chunked, ///< Nothing goes wrong: the output comes in chunks.
    closing, ///< Nothing goes wrong: the connection ends with each answer.
    // The upload is refused.
    unauthorized,
    tooLarge,
    unsupported,
    limitReached,
    outOfOrder,
    // The upload is not answered properly.
    lostDuringUpload,
    lostAfterUpload,
    halfHead,
    halfAnswer,
    noJSON,
    noSize,
    noLocation,
    otherHost,
    otherScheme,
    endlessHead,
    notHTTP,
    // The output is not sent properly.
    outputGone,
    outputOutOfOrder,
    emptyOutput,
    halfOutput,
    halfChunks,
    lostOutput,
    badChunks,
    redirectElsewhere,
    // The disk fails.
    sourceGone,
    noFolder,
    fileForFolder,
    readOnlyFolder,
};

constexpr int firstFault = static_cast<int>(Fault::unauthorized);
constexpr int firstDiskFault = static_cast<int>(Fault::sourceGone);
constexpr int faultCount = static_cast<int>(Fault::readOnlyFolder) + 1;

const char *name(Fault fault);

/// What the row says; empty when nothing goes wrong. `fileName` is the picture's.
QString sentence(Fault fault, const QString &fileName);

/// A tenth of the pictures meet a fault in their first upload, every kind in its turn. A tenth of
/// the later uploads meet one by chance, but none of the disk.
Fault planned(quint32 seed, int picture, int upload);

} // namespace pixpress::test
