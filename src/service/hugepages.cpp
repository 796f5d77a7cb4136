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
    const auto page = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    char *const begin = buffer.data();
    const size_t skipped = (page - reinterpret_cast<std::uintptr_t>(begin) % page) % page;
    const size_t size = static_cast<size_t>(buffer.capacity()) - skipped;
    madvise(begin + skipped, size / page * page, MADV_HUGEPAGE);
#endif
}

} // namespace pixpress
