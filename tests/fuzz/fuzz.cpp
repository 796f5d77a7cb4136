// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "fuzz.h"

#include <QCryptographicHash>
#include <QtEndian>

#include <bit>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr unsigned magnitudes = 65; ///< Of a number of 64 bits, with 0.
constexpr unsigned kinds = 64;

// libFuzzer finds them by the section's name.
[[gnu::section("__libfuzzer_extra_counters")]] uint8_t counters[kinds * magnitudes];

} // namespace

namespace pixpress::fuzz {

quint64 digestOf(const QByteArray &input)
{
    return qFromBigEndian<quint64>(
        QCryptographicHash::hash(input, QCryptographicHash::Md5).constData());
}

void noteOutcome(unsigned kind, quint64 value)
{
    counters[kind % kinds * magnitudes + static_cast<unsigned>(std::bit_width(value))] = 1;
}

void fail(const char *claim, const char *file, int line)
{
    std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, claim);
    std::abort();
}

} // namespace pixpress::fuzz

// What the sanitizers take, whoever starts the program: so a found case fails in a debugger and by
// hand as it did here.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options()
{
    // A header may state what does not fit into memory: the caller must cope with the refusal.
    return "allocator_may_return_null=1:handle_abort=1";
}

extern "C" const char *__ubsan_default_options();
extern "C" const char *__ubsan_default_options()
{
    return "print_stacktrace=1";
}

// Only leaks of ours are looked for. What these libraries keep is made once, for their types and
// threads, and reachable only in ways that the leak checker does not see.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:libglib-2.0\n"
           "leak:libgobject-2.0\n"
           "leak:libvips.so\n"
           "leak:libheif.so\n"
           "leak:libaom.so\n"
           "leak:_dlerror_run\n";
}
