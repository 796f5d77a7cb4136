// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/overwrite.h"

#include "model/bytes.h"
#include "pipeline/descriptor.h"
#include "pipeline/newfile.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/statvfs.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace pixpress {

namespace {

using Reason = QString;

std::unexpected<Reason> because(int error)
{
    return std::unexpected(Descriptor::describe(error));
}

timespec modified(const struct stat &status)
{
#ifdef Q_OS_DARWIN
    return status.st_mtimespec;
#else
    return status.st_mtim;
#endif
}

bool isSameVersion(const struct stat &one, const struct stat &other)
{
    const timespec before = modified(one);
    const timespec after = modified(other);
    return one.st_size == other.st_size && before.tv_sec == after.tv_sec &&
           before.tv_nsec == after.tv_nsec;
}

void setModified(const Descriptor &file, const struct stat &status)
{
    const timespec times[] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, modified(status)};
    (void)futimens(file.get(), times); // Not every file system keeps them.
}

/// The copy of a file's content while that is replaced.
class UndoCopy
{
public:
    explicit UndoCopy(const QString &original)
        : m_path(original + u".pixpress-old"_s), m_folder(QFileInfo(original).path())
    {
    }

    QString name() const { return QFileInfo(m_path).fileName(); }
    bool exists() const { return QFileInfo(m_path).isSymLink() || QFileInfo::exists(m_path); }
    bool isMade() const { return m_isMade; }

    /// Keeps `content`, which is the file's, with its permissions and its time. Does nothing in a
    /// folder in which this user may make no files.
    std::expected<void, Reason> make(const Descriptor &file, const struct stat &status,
                                     const QByteArray &content);
    /// Once the file needs it no longer. A copy that cannot be removed harms nothing.
    void remove(const Descriptor &file);

private:
    Reason missingRoom(int error, qint64 size) const;

    QString m_path;
    QString m_folder;
    bool m_isMade = false;
};

std::expected<void, Reason> UndoCopy::make(const Descriptor &file, const struct stat &status,
                                           const QByteArray &content)
{
    const QByteArray folder = QFile::encodeName(m_folder);
    if (faccessat(AT_FDCWD, folder.constData(), W_OK | X_OK, AT_EACCESS) != 0 &&
        (errno == EACCES || errno == EPERM))
        return {};
    const auto made = makeFile(m_path, [&](Descriptor &copy) -> Descriptor::Result<> {
        // Closed to all others until it is its owner's: that can be somebody else's file.
        const bool isOwners = fchmod(copy.get(), S_IRUSR | S_IWUSR) == 0 &&
                              fchown(copy.get(), status.st_uid, status.st_gid) == 0;
        if (!copy.cloneFrom(file)) {
            qint64 written = 0;
            if (const auto copied = copy.writeAll(content, written); !copied)
                return copied;
        }
        if (isOwners)
            (void)fchmod(copy.get(), status.st_mode & 0777);
        setModified(copy, status);
        return {};
    });
    if (made) {
        m_isMade = true;
        return {};
    }
    if (made.error() == EEXIST)
        return std::unexpected(leftoverCopy(m_path.chopped(u".pixpress-old"_s.size())));
    return std::unexpected(missingRoom(made.error(), content.size()));
}

Reason UndoCopy::missingRoom(int error, qint64 size) const
{
    Reason reason = Descriptor::describe(error);
    struct statvfs disk = {};
    if ((error != ENOSPC && error != EDQUOT) ||
        statvfs(QFile::encodeName(m_folder).constData(), &disk) != 0)
        return reason;
    const auto block = static_cast<qint64>(disk.f_frsize);
    const auto free = static_cast<qint64>(disk.f_bavail) * block;
    const qint64 missing = (size + block - 1) / block * block - free;
    if (missing > 0)
        reason +=
            u" (%1 more are needed to keep the original until the new picture is written)"_s.arg(
                ByteFormatter::format(missing));
    return reason;
}

void UndoCopy::remove(const Descriptor &file)
{
    if (m_isMade && unlink(QFile::encodeName(m_path).constData()) == 0)
        (void)Descriptor::syncFolder(m_folder, file);
}

/// Returns when it is on the disk. `touched`: whether anything changed.
Descriptor::Result<> replaceContent(Descriptor &file, const QByteArray &bytes, bool &touched)
{
    qint64 written = 0;
    const auto result = file.writeAll(bytes, written);
    touched = touched || written > 0;
    if (!result)
        return result;
    if (const auto resized = file.resize(bytes.size()); !resized)
        return resized;
    touched = true;
    return file.sync();
}

} // namespace

QByteArray digestOf(const QByteArray &content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Blake2b_256);
}

QString leftoverCopy(const QString &path)
{
    const QString real = QFileInfo(path).canonicalFilePath();
    const UndoCopy undo(real.isEmpty() ? path : real);
    if (!undo.exists())
        return {};
    return u"An interrupted save left the original in \"%1\". Restore or delete that file first"_s
        .arg(undo.name());
}

std::expected<void, QString> overwrite(const QString &path, const QByteArray &bytes,
                                       const QByteArray &digest)
{
    // Some devices do something when they are opened.
    if (const QFileInfo info(path); info.exists() && !info.isFile())
        return because(Descriptor::notAFile);
    auto file = Descriptor::open(path, O_RDWR);
    if (!file)
        return because(file.error());
    if (const auto locked = file->lock(LOCK_EX); !locked)
        return because(locked.error());
    file->holdOthersOff();
    const auto before = file->status();
    if (!before)
        return because(before.error());
    const auto old = file->readAll();
    if (!old && old.error() == Descriptor::cutShort)
        return because(Descriptor::changed);
    if (!old)
        return std::unexpected(u"Its present content could not be kept safe"_s);
    const QString real = QFileInfo(path).canonicalFilePath();
    if ((!digest.isEmpty() && digestOf(*old) != digest) || !file->isAt(real))
        return because(Descriptor::changed);

    UndoCopy undo(real);
    if (const auto kept = undo.make(*file, *before, *old); !kept)
        return std::unexpected(kept.error());

    bool touched = false;
    Descriptor::Result<> written = std::unexpected(Descriptor::changed);
    if (const auto now = file->status(); now && isSameVersion(*before, *now) && file->isAt(real))
        written = replaceContent(*file, bytes, touched);
    if (written && !file->isAt(real)) // Another file has taken the name: this one was not it.
        written = std::unexpected(Descriptor::changed);
    if (written) {
        undo.remove(*file);
        return {};
    }

    Reason reason = Descriptor::describe(written.error());
    if (touched) {
        if (!replaceContent(*file, *old, touched)) {
            reason +=
                undo.isMade()
                    ? u", and the file is damaged; its original is in \"%1\""_s.arg(undo.name())
                    : u", and its old content could not be put back completely"_s;
            return std::unexpected(reason);
        }
        setModified(*file, *before);
    }
    undo.remove(*file);
    return std::unexpected(reason);
}

} // namespace pixpress
