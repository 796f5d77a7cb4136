// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/options.h"

#include <rapidcheck.h>

#include <iosfwd>
#include <optional>
#include <variant>
#include <vector>

/// What can happen to a queue, at random. Numbers choose from what there is, modulo how much there
/// is, so that every sequence makes sense and so does every part of it.
namespace pixpress::test {

/// The files that are added. Those in existingFiles are there at first.
extern const std::vector<const char *> fileNames;
extern const std::vector<const char *> existingFiles;

/// What the options ask for; 0 is always the default.
struct Asked
{
    int destination = 0;
    int folder = 0; ///< None, one that exists, one that does not.
    int format = 0;
    int dimensions = 0; ///< As bits: on, width, height.
    int preserved = 0;  ///< As bits.
    int colour = 0;

    CompressionOptions options(const QString &root) const;
};

// clang-format off
struct Add { std::vector<int> files; Asked asked; };
struct Retry { int task = 0; Asked asked; };
struct ClearCompleted {};
struct ClearAll {};
/// An answer to one of the requests that wait; failure 0 is success.
struct AnswerOne { int request = 0; int failure = 0; int count = 0; int size = 0; };
struct LoopTurns {};
struct SetKey { int key = 0; };
struct SetQuota { int count = 0; };
struct WatchQuota { bool on = true; };
struct NextMonth {};
struct RemoveFile { int file = 0; };
struct RestoreFile { int file = 0; };
// clang-format on

using Command = std::variant<AnswerOne, Add, LoopTurns, Retry, ClearCompleted, ClearAll, SetKey,
                             SetQuota, WatchQuota, NextMonth, RemoveFile, RestoreFile>;

/// The keys, absent and empty ones too, and the counts that commands choose from.
extern const std::vector<const char *> keys;
extern const std::vector<std::optional<qint64>> counts;

rc::Gen<Command> anyCommand();

std::ostream &operator<<(std::ostream &stream, const Command &command);

} // namespace pixpress::test
