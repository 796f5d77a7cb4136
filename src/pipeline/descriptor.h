// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <chrono>
#include <expected>
#include <sys/stat.h>
#include <utility>

namespace pixpress {

/// An open file of the system, closed with this object. Every call is one that QFile would make,
/// but each failure of the disk is reported (QFile takes some for the end of the file), and the
/// file that is looked at is the one that was opened. Errors are values of errno, or those below.
/// All calls wait for the disk.
class Descriptor
{
public:
    template <typename T = void>
    using Result = std::expected<T, int>;

    static constexpr int notAFile = -1;
    static constexpr int cutShort = -2;
    static constexpr int changed = -3;

    /// How long open() and lock() wait for another program at most. Short enough for a person who
    /// waits, and for a process that is asked to end.
    static constexpr std::chrono::milliseconds patience{1000};

    /// An error in words, without a full stop.
    static QString describe(int error);

    /// Never waits for the other end of a pipe; waits for a lease, as file servers take them, and
    /// then fails with EWOULDBLOCK. `flags` are those of open(2); `mode` are the permissions of a
    /// file that is made, less those that the umask forbids.
    static Result<Descriptor> open(const QString &path, int flags, mode_t mode = 0666);
    /// A new file in a folder, to be written. It has no name, and is gone when it gets none before
    /// it is closed or the process ends, however that ends. Not every file system can do this.
    static Result<Descriptor> openUnnamed(const QString &folder);

    Descriptor(Descriptor &&other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~Descriptor();

    int get() const { return m_descriptor; } ///< Still owned by this object.

    /// Fails with notAFile for what is no regular file, such as a folder or a pipe.
    Result<struct stat> status() const;
    Result<qint64> size() const; ///< In bytes; fails as status() does.
    /// Whether this path leads to this file, and not to one that has taken its place.
    bool isAt(const QString &path) const;

    /// All of it, wherever the file's offset is. Fails with notAFile as status() does, and with
    /// cutShort when it ends before the size that it had at first: half a picture is none.
    Result<QByteArray> readAll();
    /// Writes at `offset`. `written` is how many bytes were, also after an error.
    Result<> writeAll(const QByteArray &bytes, qint64 &written, qint64 offset = 0);
    /// Makes this file's content that of another without copying it. Not every file system can.
    Result<> cloneFrom(const Descriptor &other);
    /// Gives an unnamed file its name; never that of something that is there.
    Result<> giveName(const QString &path);
    /// Cuts the file to so many bytes, or fills it up with zeros.
    Result<> resize(qint64 size);
    /// Returns when content and size are on the disk.
    Result<> sync();
    /// Returns when the names in a folder are on the disk; `inside` is any file there.
    static Result<> syncFolder(const QString &folder, const Descriptor &inside);
    /// Takes a lock of flock(2), LOCK_SH or LOCK_EX, that other programs may respect and other
    /// copies of this one do; it ends with this object. Fails with EWOULDBLOCK when another
    /// program keeps it for longer than `wait`. Where there are no such locks it succeeds.
    Result<> lock(int operation, std::chrono::milliseconds wait = patience);
    /// Makes other programs that open the file wait until it is closed here: they never see it half
    /// written, nor save into it. Does nothing when one has it open already, or where the system
    /// cannot do this. This process must not open the file meanwhile.
    void holdOthersOff();

private:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

} // namespace pixpress
