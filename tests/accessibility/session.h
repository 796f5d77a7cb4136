// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "desktop/program.h"
#include "desktop/service.h"
#include "screenreader.h"

namespace pixpress::test {

/// Somebody who works with a screen reader, at a desktop and with a service of their own.
class Session
{
public:
    /// The desktop and the screen reader; the application is still to be opened.
    bool start();

    /// Opens the application with these files, with the service's key or without any; returns once
    /// it is in front and the screen reader sees it.
    bool open(bool hasKey, const QStringList &files = {});
    void close();

    /// Makes files that pass for pictures, and drops them on the window. False when it does not
    /// take them.
    bool add(const QStringList &names);
    /// Answers the oldest request that waits, once one does.
    bool answerOne();

    Desktop desktop;
    ScreenReader reader;
    std::unique_ptr<Service> service;
    std::unique_ptr<Program> program;
};

/// Compares once it is as expected, or the time is up. (QTRY_COMPARE leaves out of its time what
/// the question takes, which for a tree is most of it.)
#define EXPECT(actual, expected)                                                                   \
    do {                                                                                           \
        (void)QTest::qWaitFor([&] { return (actual) == (expected); }, pixpress::test::deadline);   \
        QCOMPARE(actual, expected);                                                                \
    } while (false)

/// Where the keyboard has come to.
#define EXPECT_FOCUS(reader, expected) EXPECT((reader).focus(), QStringLiteral(expected))

} // namespace pixpress::test
