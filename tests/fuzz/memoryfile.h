// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "fuzz.h"

#include <sys/mman.h>
#include <unistd.h>

namespace pixpress::fuzz {

/// An open file with this content, in no folder.
class MemoryFile
{
public:
    explicit MemoryFile(const QByteArray &content) : m_descriptor(::memfd_create("picture", 0))
    {
        const auto size = static_cast<size_t>(content.size());
        HOLDS(::write(m_descriptor, content.constData(), size) == content.size());
        ::lseek(m_descriptor, 0, SEEK_SET);
    }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;
    ~MemoryFile() { ::close(m_descriptor); }

    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

} // namespace pixpress::fuzz
