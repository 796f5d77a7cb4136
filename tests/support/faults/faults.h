// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

/// Disks that fail on demand: stands before the C library's calls on files, whoever in the process
/// makes them. Knows the call's file by its path, and leaves all files alone that are not below the
/// folder of the fault. Uses no Qt, for it works inside it.
///
/// A program that does not link this library can have it preloaded, and be told the fault by
/// PIXPRESS_FAULT="CALL NTH ERROR HOW FOLDER", such as "write 2 28 once /tmp/x".
namespace pixpress::test::faults {

enum class Call {
    stat,
    open,
    lock,
    read,
    write,
    clone,
    ftruncate,
    fsync,
    link,
    rename,
    unlink,
    close,
};

constexpr Call allCalls[] = {Call::stat,  Call::open,   Call::lock,      Call::read,
                             Call::write, Call::clone,  Call::ftruncate, Call::fsync,
                             Call::link,  Call::rename, Call::unlink,    Call::close};

const char *name(Call call);

enum class How {
    once,    ///< Only the nth call fails.
    always,  ///< It and all later ones fail.
    halfway, ///< It does half of its work and only the next one fails.
    dying,   ///< It does half of its work and all later ones fail.
    brief,   ///< It does half of its work, and that is all: no call fails.
    killed,  ///< The process is killed before the nth call.
    torn,    ///< The process is killed when that call has done half of its work.
};
// Only reading and writing have a half: other calls do all of it.

constexpr How allWays[] = {How::once, How::always, How::halfway, How::dying, How::brief};
constexpr How deadlyWays[] = {How::killed, How::torn};

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

/// What not every file system can do.
struct Abilities
{
    bool unnamedFiles = true;    ///< O_TMPFILE
    bool exclusiveRename = true; ///< RENAME_NOREPLACE
    bool links = true;
    bool clones = true; ///< FICLONE
};

/// Makes the file systems of all folders as poor as this.
void limit(const Abilities &abilities);

/// A change of the disk.
struct Step
{
    enum class Kind {
        make, ///< A new inode, which may have had another file before.
        write,
        resize,
        sync,   ///< Of a file or of a folder, which is the inode.
        link,   ///< The inode gets the name `path`.
        rename, ///< From `path` to `target`, which is replaced.
        unlink,
    };
    Kind kind;
    ino_t inode = 0;
    off_t offset = 0; ///< For resize the new size.
    std::string data = {};
    std::string path = {};
    std::string target = {};
};

/// Notes from now on what calls change below `folder`, in their order.
void record(const char *folder);
/// Ends it.
std::vector<Step> recorded();

/// Is called before each call on open files below `folder`; may not make such calls itself. Pass
/// nothing to end it.
void observe(void (*observer)(Call call, int descriptor), const char *folder = "/");

/// Is called with the path before a file below `folder` is opened or made, if it is opened by an
/// absolute path, and before it is given a name; may change what is there. Pass nothing to end it.
void observeOpening(void (*observer)(const char *path), const char *folder = "/");

} // namespace pixpress::test::faults
