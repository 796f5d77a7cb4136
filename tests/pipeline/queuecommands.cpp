// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/queuecommands.h"

#include "pipeline/naivequeue.h"

#include <ostream>

using namespace Qt::StringLiterals;

namespace pixpress::test {

// Names that meet in an output's name, that are no pictures, that are not there, that are a folder.
const std::vector<const char *> fileNames = {"a.png",     "b.JPG",      "c.jpeg",   "a.webp",
                                             "none.avif", "folder.png", "note.txt", "plain",
                                             ".png",      "d.tar.WebP"};
const std::vector<const char *> existingFiles = {"a.png",    "b.JPG", "c.jpeg", "a.webp",
                                                 "note.txt", "plain", ".png",   "d.tar.WebP"};
const std::vector<const char *> keys = {"key", "", "other"};
const std::vector<std::optional<qint64>> counts = {std::nullopt, 1, 499, 500, 0, -4, 501};

CompressionOptions Asked::options(const QString &root) const
{
    CompressionOptions options;
    options.outputDestination = OutputDestination(destination);
    if (folder > 0)
        options.customFolderURL =
            QUrl::fromLocalFile(root + (folder == 1 ? u"/out"_s : u"/gone"_s));
    options.convertEnabled = format > 0;
    if (format > 0)
        options.convertFormat = ImageFormat(format - 1);
    options.resizeEnabled = (dimensions & 1) != 0;
    if ((dimensions & 2) != 0)
        options.resizeWidth = 5;
    if ((dimensions & 4) != 0)
        options.resizeHeight = 7;
    options.preserveCopyright = (preserved & 1) != 0;
    options.preserveCreation = (preserved & 2) != 0;
    options.preserveLocation = (preserved & 4) != 0;
    if (colour > 0)
        options.backgroundColor = u"#102030"_s;
    return options;
}

namespace {

rc::Gen<int> below(size_t count)
{
    return rc::gen::resize(rc::kNominalSize, rc::gen::inRange(0, static_cast<int>(count)));
}

/// Mostly the first, that is the usual.
rc::Gen<int> seldomBelow(size_t count)
{
    return rc::gen::weightedOneOf<int>({{3, rc::gen::just(0)}, {1, below(count)}});
}

rc::Gen<Asked> anyAsked()
{
    return rc::gen::build<Asked>(rc::gen::set(&Asked::destination, below(3)),
                                 rc::gen::set(&Asked::folder, below(3)),
                                 rc::gen::set(&Asked::format, seldomBelow(5)),
                                 rc::gen::set(&Asked::dimensions, seldomBelow(8)),
                                 rc::gen::set(&Asked::preserved, seldomBelow(8)),
                                 rc::gen::set(&Asked::colour, seldomBelow(2)));
}

template <typename T>
rc::Gen<Command> command(rc::Gen<T> gen)
{
    return rc::gen::map(std::move(gen), [](T value) { return Command(std::move(value)); });
}

template <typename T, typename Member>
rc::Gen<Command> command(Member T::*member, rc::Gen<Member> gen)
{
    return command(rc::gen::build<T>(rc::gen::set(member, std::move(gen))));
}

QString toText(const Command &command)
{
    struct Visitor
    {
        QString operator()(const Add &add) const
        {
            QStringList names;
            for (const int file : add.files)
                names.append(QString::fromLatin1(fileNames.at(static_cast<size_t>(file))));
            return u"add %1 (%2)"_s.arg(names.join(u' '), describe(add.asked.options({})));
        }
        QString operator()(const Retry &retry) const
        {
            return u"retry task %1 (%2)"_s.arg(retry.task).arg(describe(retry.asked.options({})));
        }
        QString operator()(const ClearCompleted &) const { return u"clear completed"_s; }
        QString operator()(const ClearAll &) const { return u"clear all"_s; }
        QString operator()(const AnswerOne &answer) const
        {
            const auto count = counts.at(static_cast<size_t>(answer.count));
            return u"answer request %1 with %2, count %3, size %4"_s.arg(answer.request)
                .arg(answer.failure > 0 ? u"failure %1"_s.arg(answer.failure) : u"success"_s,
                     count ? QString::number(*count) : u"none"_s)
                .arg(answer.size);
        }
        QString operator()(const LoopTurns &) const { return u"the event loop turns"_s; }
        QString operator()(const SetKey &set) const
        {
            return u"key \"%1\""_s.arg(QLatin1StringView(keys.at(static_cast<size_t>(set.key))));
        }
        QString operator()(const SetQuota &set) const
        {
            return u"quota %1"_s.arg(counts.at(static_cast<size_t>(set.count)).value_or(0));
        }
        QString operator()(const WatchQuota &watch) const
        {
            return watch.on ? u"quota watched"_s : u"quota not watched"_s;
        }
        QString operator()(const NextMonth &) const { return u"next month"_s; }
        QString operator()(const RemoveFile &remove) const
        {
            return u"remove file "_s +
                   QLatin1StringView(existingFiles.at(static_cast<size_t>(remove.file)));
        }
        QString operator()(const RestoreFile &restore) const
        {
            return u"restore file "_s +
                   QLatin1StringView(existingFiles.at(static_cast<size_t>(restore.file)));
        }
    };
    return std::visit(Visitor{}, command);
}

} // namespace

rc::Gen<Command> anyCommand()
{
    using namespace rc;
    const auto answer = gen::build<AnswerOne>(
        gen::set(&AnswerOne::request, below(5)), gen::set(&AnswerOne::failure, seldomBelow(10)),
        gen::set(&AnswerOne::count, seldomBelow(counts.size())),
        gen::set(&AnswerOne::size, seldomBelow(30)));
    const auto add = gen::build<Add>(
        gen::set(&Add::files,
                 gen::resize(6, gen::container<std::vector<int>>(below(fileNames.size())))),
        gen::set(&Add::asked, anyAsked()));
    const auto retry =
        gen::build<Retry>(gen::set(&Retry::task, below(50)), gen::set(&Retry::asked, anyAsked()));
    return gen::weightedOneOf<Command>({
        {24, command(answer)},
        {9, command(add)},
        {5, command(gen::construct<LoopTurns>())},
        {5, command(retry)},
        {2, command(gen::construct<ClearCompleted>())},
        {1, command(gen::construct<ClearAll>())},
        {2, command(&SetKey::key, seldomBelow(keys.size()))},
        {2, command(&SetQuota::count, seldomBelow(counts.size()))},
        {1, command(&WatchQuota::on, gen::arbitrary<bool>())},
        {1, command(gen::construct<NextMonth>())},
        {1, command(&RemoveFile::file, below(existingFiles.size()))},
        {1, command(&RestoreFile::file, below(existingFiles.size()))},
    });
}

std::ostream &operator<<(std::ostream &stream, const Command &command)
{
    return stream << toText(command).toStdString();
}

} // namespace pixpress::test
