// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "pipeline/servicefaults.h"

#include <array>

using namespace Qt::StringLiterals;

namespace pixpress::test {

namespace {

struct Entry
{
    Fault fault;
    const char *name;
    const char *sentence;
};

constexpr auto lost = "The network connection was lost.";
constexpr auto notSecure =
    "The server named an address that is not secure, so nothing was sent there.";

constexpr std::array table{
    Entry{Fault::none, "none", ""},
    Entry{Fault::chunked, "output in chunks", ""},
    Entry{Fault::closing, "connection closed after the answer", ""},
    Entry{Fault::unauthorized, "401", "Invalid API key"},
    Entry{Fault::tooLarge, "413", "File exceeds 500 MB limit"},
    Entry{Fault::unsupported, "415", "Unsupported image format"},
    Entry{Fault::limitReached, "429", "Monthly compression limit reached (500/month)"},
    Entry{Fault::outOfOrder, "500", "API error (500): Out of order."},
    Entry{Fault::lostDuringUpload, "dropped during the upload", lost},
    Entry{Fault::lostAfterUpload, "dropped after the upload", lost},
    Entry{Fault::halfHead, "half a head", lost},
    Entry{Fault::halfAnswer, "half an answer", lost},
    Entry{Fault::noJSON, "no JSON", "The service's answer is not a JSON object."},
    Entry{Fault::noSize, "JSON without the size", "The service's answer lacks \"input.size\"."},
    Entry{Fault::noLocation, "no Location", "Invalid server response"},
    Entry{Fault::otherHost, "Location on another host", notSecure},
    Entry{Fault::otherScheme, "Location of another scheme", notSecure},
    Entry{Fault::endlessHead, "head without an end", "The server's answer is too large."},
    Entry{Fault::notHTTP, "no HTTP", "Invalid server response"},
    Entry{Fault::outputGone, "404 for the output", "API error (404): Unknown error"},
    Entry{Fault::outputOutOfOrder, "500 for the output", "API error (500): Out of order."},
    Entry{Fault::emptyOutput, "empty output", "Failed to download compressed image"},
    Entry{Fault::halfOutput, "half an output", lost},
    Entry{Fault::halfChunks, "half of the chunks", lost},
    Entry{Fault::lostOutput, "dropped instead of the output", lost},
    Entry{Fault::badChunks, "chunk of no length", lost},
    Entry{Fault::redirectElsewhere, "redirect to another host", notSecure},
    Entry{Fault::sourceGone, "source gone", "Could not read \"%1\": No such file or directory."},
    Entry{Fault::noFolder, "no folder", "Could not write \"%1\": No such file or directory."},
    Entry{Fault::fileForFolder, "file in the folder's place",
          "Could not write \"%1\": Not a directory."},
    Entry{Fault::readOnlyFolder, "read-only folder", "Could not write \"%1\": Permission denied."},
};
static_assert(table.size() == faultCount);

const Entry &entryOf(Fault fault)
{
    return table.at(static_cast<size_t>(fault));
}

} // namespace

const char *name(Fault fault)
{
    return entryOf(fault).name;
}

QString sentence(Fault fault, const QString &fileName)
{
    return QString::fromLatin1(entryOf(fault).sentence).replace(u"%1"_s, fileName);
}

Fault planned(quint32 seed, int picture, int upload)
{
    const quint32 dice = scatter(seed, static_cast<quint32>(picture), static_cast<quint32>(upload));
    const int kinds = upload <= 1 ? faultCount - firstFault : firstDiskFault - firstFault;
    if (upload <= 1 && picture % 10 == 5)
        return Fault(firstFault + picture / 10 % kinds);
    if (upload > 1 && dice % 10 == 0)
        return Fault(firstFault + static_cast<int>(dice / 10) % kinds);
    if (dice % 7 == 0)
        return Fault::chunked;
    return dice % 7 == 1 ? Fault::closing : Fault::none;
}

} // namespace pixpress::test
