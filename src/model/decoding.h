// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace pixpress {

/// Why a JSON value could not be decoded into a record.
struct DecodingError
{
    QString description; ///< A sentence for the user that names the member at fault.

    bool operator==(const DecodingError &) const = default;
};

} // namespace pixpress
