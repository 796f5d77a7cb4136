// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "codec/jpegoutput.h"

#include <jerror.h>

#include <cstdlib>

namespace pixpress {

namespace {

constexpr size_t startCapacity = size_t{64} * 1024;

} // namespace

JpegOutput::JpegOutput()
{
    m_manager.base.init_destination = &onStart;
    m_manager.base.empty_output_buffer = &onFull;
    m_manager.base.term_destination = &onEnd;
}

JpegOutput::~JpegOutput()
{
    std::free(m_manager.bytes);
}

QByteArray JpegOutput::bytes() const
{
    return {reinterpret_cast<const char *>(m_manager.bytes),
            static_cast<qsizetype>(m_manager.capacity - m_manager.base.free_in_buffer)};
}

JpegOutput::Manager &JpegOutput::managerOf(j_compress_ptr target)
{
    return *reinterpret_cast<Manager *>(target->dest); // whose first member it is
}

/// What is written so far stays, and fills the buffer up to the capacity it has.
void JpegOutput::grow(j_compress_ptr target, size_t capacity)
{
    Manager &manager = managerOf(target);
    auto *bytes = static_cast<unsigned char *>(std::realloc(manager.bytes, capacity));
    if (!bytes)
        ERREXIT1(target, JERR_OUT_OF_MEMORY, 10); // leaves by longjmp
    manager.base.next_output_byte = bytes + manager.capacity;
    manager.base.free_in_buffer = capacity - manager.capacity;
    manager.bytes = bytes;
    manager.capacity = capacity;
}

void JpegOutput::onStart(j_compress_ptr target)
{
    managerOf(target).capacity = 0;
    grow(target, startCapacity);
}

boolean JpegOutput::onFull(j_compress_ptr target)
{
    grow(target, 2 * managerOf(target).capacity);
    return TRUE;
}

void JpegOutput::onEnd(j_compress_ptr) {}

} // namespace pixpress
