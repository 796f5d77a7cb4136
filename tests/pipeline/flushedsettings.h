// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/settings.h"

namespace pixpress::test {

/// The user's settings, with each change on the disk when the call returns.
class FlushedSettings : public UserSettings
{
public:
    using UserSettings::UserSettings;

    void setValues(const QVariantMap &values) override
    {
        UserSettings::setValues(values);
        flush();
    }
};

} // namespace pixpress::test
