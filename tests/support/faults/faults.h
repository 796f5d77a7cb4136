// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

/// Disks that fail on demand: stands before the C library's calls on file descriptors, whoever in
/// the process makes them. Knows the call's file by its path, and leaves all files alone that are
/// not below the folder of the fault. Uses no Qt, for it works inside it.
///
/// A program that does not link this library can have it preloaded, and be told the fault by
/// PIXPRESS_FAULT="CALL NTH ERROR HOW FOLDER", such as "write 2 28 once /tmp/x".
namespace pixpress::test::faults {

enum class Call { read, write, ftruncate, fsync, posix_fallocate, close };

constexpr Call allCalls[] = {Call::read,  Call::write,           Call::ftruncate,
                             Call::fsync, Call::posix_fallocate, Call::close};

const char *name(Call call);

enum class How {
    once,    ///< Only the nth call fails.
    always,  ///< It and all later ones fail.
    halfway, ///< It does half of its work and only the next one fails.
    dying,   ///< It does half of its work and all later ones fail.
    brief,   ///< It does half of its work, and that is all: no call fails.
};
// posix_fallocate either succeeds or fails: for it, doing half of the work is a failure too.

constexpr How allWays[] = {How::once, How::always, How::halfway, How::dying, How::brief};

const char *name(How how);

struct Fault
{
    Call call;
    int nth; ///< Counted from 1.
    int error = 0;
    How how = How::once;
};

/// From now on until disarm(): calls on files below `folder`, an absolute path without symbolic
/// links, meet this fault. Counting starts anew.
void arm(const Fault &fault, const char *folder);

/// Returns how many calls the fault has met.
int disarm();

/// Is called before each call on files below `folder`; may not make such calls itself. Pass nothing
/// to end it.
void observe(void (*observer)(Call call, int descriptor), const char *folder = "/");

/// Is called with the path before a file below `folder` is opened or made, if it is opened by an
/// absolute path; may change what is there, but not open files itself. Pass nothing to end it.
void observeOpening(void (*observer)(const char *path), const char *folder = "/");

} // namespace pixpress::test::faults
