// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "accessibletree.h"

namespace pixpress::test {

/// What is wrong with a tree for whoever cannot see it, a line each; empty when nothing is. Only
/// what shows is looked at.
QString faults(const QList<Node> &tree);

} // namespace pixpress::test
