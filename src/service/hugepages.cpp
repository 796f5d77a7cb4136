// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "service/hugepages.h"

#include <cstdint>
#include <sys/mman.h>
#include <unistd.h>

namespace pixpress {

void preferHugePages([[maybe_unused]] QByteArray &buffer)
{
#ifdef MADV_HUGEPAGE
    constexpr qsizetype worthwhile = 8 << 20;
    if (buffer.capacity() < worthwhile)
        return;
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(buffer.data());
    const auto end = begin + static_cast<std::uintptr_t>(buffer.capacity());
    const auto first = (begin + page - 1) / page * page;
    madvise(reinterpret_cast<void *>(first), (end - first) / page * page, MADV_HUGEPAGE);
#endif
}

} // namespace pixpress
