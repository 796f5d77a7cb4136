// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <expected>
#include <utility>

namespace pixpress {

/// An open file of the system, closed with this object. Every call is one that QFile would make,
/// but each failure of the disk is told (QFile takes some for the end of the file), and the file
/// that is looked at is the one that was opened. Errors are values of errno, or those below. All
/// calls wait for the disk.
class Descriptor
{
public:
    template <typename T = void>
    using Result = std::expected<T, int>;

    static constexpr int notAFile = -1;
    static constexpr int cutShort = -2;

    /// Never waits for the other end of a pipe. `flags` are those of open(2); a file that is made
    /// has the permissions that the umask leaves.
    static Result<Descriptor> open(const QString &path, int flags);
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

    /// In bytes; fails with notAFile for what is no regular file, such as a folder or a pipe.
    Result<qint64> size() const;

    /// All of it, wherever the file's offset stands. Fails with notAFile as size() does, and with
    /// cutShort when it ends before the size that it had at first: half a picture is none.
    Result<QByteArray> readAll();
    /// Writes from the start on. `written` tells how many bytes, also after an error.
    Result<> writeAll(const QByteArray &bytes, qint64 &written);
    /// Gives an unnamed file its name; never that of something that is there.
    Result<> giveName(const QString &path);
    /// Makes sure that the file system has room for so many bytes of this file. Where the system
    /// knows no better, the file grows to that size.
    Result<> reserve(qint64 size);
    /// Cuts the file to so many bytes, or fills it up with zeros.
    Result<> resize(qint64 size);
    /// Returns when the data is on the disk.
    Result<> sync();
    /// Closes early, to learn of errors that are only told then.
    Result<> close();

private:
    explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}

    int m_descriptor;
};

} // namespace pixpress
