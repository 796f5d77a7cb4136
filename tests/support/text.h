// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QtTest/QTest>

namespace pixpress {

/// Lets QCOMPARE print the values of a closed set by their raw value.
template <typename E>
    requires requires(E value) { rawValue(value); }
char *toString(E value)
{
    return QTest::toString(rawValue(value));
}

} // namespace pixpress
